#include "unit/Unit.h"

#include "unit/Application.h"
#include "unit/Bootloader.h"
#include "unit/FaultPlan.h"
#include "unit/FirmwareImage.h"
#include "unit/RequestName.h"
#include "unit/StandardRequests.h"

#include <algorithm>
#include <mutex>

namespace VirtualUnit {

struct Unit::Private
{
    explicit Private(Now clock)
        : now(std::move(clock))
    {
    }

    Answer answer(const SetupPacket& setup, const Bytes& data);
    Answer answerWithFaults(const SetupPacket& setup, const Bytes& data);
    Answer leaveAtOnce() const;
    bool hasApplication() const { return readImage(flash.application()).has_value(); }

    mutable std::mutex mutex;
    Now now;
    Identity identity;
    Overrides overrides;
    Flash flash;
    Application application{flash};
    Bootloader bootloader{flash};
    StandardRequests standard;
    FaultPlan faults;
    std::vector<TraceEntry> trace;
    bool hasArrived = false;
    bool wantsBootloader = false;
};

Unit::Unit(const UnitSetup& setup, Now now)
    : d(std::make_unique<Private>(std::move(now)))
{
    if (setup.firmware)
        d->flash.loadApplication(makeImage(setup.imageSize, *setup.firmware));
    d->identity.kind = setup.kind;
    d->identity.mode = setup.firmware ? setup.mode : Mode::Bootloader;
    d->identity.usbSerial = setup.usbSerial;
    d->overrides.serialName = setup.serialName;
    d->overrides.schemaVersion = setup.schemaVersion;
}

Unit::~Unit() = default;

Answer Unit::Private::answer(const SetupPacket& setup, const Bytes& data)
{
    if (setup.isStandard())
        return standard.handle(setup, identity, overrides, flash.layout());
    if (identity.mode == Mode::Bootloader)
        return bootloader.handle(setup, data, overrides, now());
    Answer result = application.handle(setup, overrides);
    if (result.departure)
        wantsBootloader = true;
    return result;
}

Answer Unit::Private::leaveAtOnce() const
{
    Answer result = Answer::silence();
    result.departure = Departure{milliseconds(0), overrides.returnDelay};
    return result;
}

Answer Unit::Private::answerWithFaults(const SetupPacket& setup, const Bytes& data)
{
    std::optional<std::size_t> cutTo;
    std::optional<Answer> instead;
    milliseconds extraDelay{0};
    for (const Fault& fault : faults.due(setup, data)) {
        switch (fault.action) {
        case Fault::Action::Stall:
            instead = Answer::stall();
            break;
        case Fault::Action::Silence:
            instead = Answer::silence();
            break;
        case Fault::Action::ShortAnswer:
            cutTo = fault.value;
            break;
        case Fault::Action::FailStatus:
            if (identity.mode == Mode::Bootloader && setup.isClass())
                bootloader.failNext(static_cast<Dfu::Status>(fault.value));
            else
                instead = Answer::stall();
            break;
        case Fault::Action::LeaveBus:
            instead = leaveAtOnce();
            break;
        case Fault::Action::NeverReturn:
            overrides.returns = false;
            break;
        case Fault::Action::StayBusy:
            bootloader.stayBusy(fault.value);
            break;
        case Fault::Action::Delay:
            extraDelay += milliseconds(fault.value);
            break;
        }
    }
    Answer result = instead ? *instead : answer(setup, data);
    const std::size_t limit = std::min<std::size_t>(setup.wLength, cutTo.value_or(setup.wLength));
    if (result.data.size() > limit)
        result.data.resize(limit);
    result.delay = overrides.answerDelay + extraDelay;
    if (result.departure && !overrides.returns)
        result.departure->returnAfter.reset();
    return result;
}

Answer Unit::control(const SetupPacket& setup, const Bytes& data)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    const Mode modeBefore = d->identity.mode;
    Answer answer = d->answerWithFaults(setup, data);
    d->trace.push_back(
        {d->now(), modeBefore, requestName(setup, data), setup, data, answer.kind, answer.data});
    return answer;
}

void Unit::arrive()
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->bootloader.reset();
    d->standard.reset();
    if (d->hasArrived) {
        const bool toBootloader = d->wantsBootloader || !d->hasApplication();
        d->identity.mode = toBootloader ? Mode::Bootloader : Mode::Application;
    }
    d->hasArrived = true;
    d->wantsBootloader = false;
}

void Unit::leave(Reason reason)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->bootloader.settle(d->now());
    d->bootloader.reset();
    if (reason == Reason::Unplugged)
        d->wantsBootloader = false;
}

void Unit::busReset()
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->bootloader.settle(d->now());
    d->bootloader.reset();
    d->standard.reset();
}

Bytes Unit::deviceDescriptor() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return Descriptors::device(d->identity);
}

Bytes Unit::configurationDescriptor() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return Descriptors::configuration(d->identity, d->overrides);
}

std::string Unit::stringText(std::uint8_t index) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return Descriptors::text(index, d->identity, d->overrides, d->flash.layout()).value_or("");
}

Kind Unit::kind() const
{
    return d->identity.kind;
}

Mode Unit::mode() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->identity.mode;
}

std::uint16_t Unit::productId() const
{
    return Descriptors::productId(kind(), mode());
}

std::string Unit::firmwareVersion() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->bootloader.settle(d->now());
    const auto image = readImage(d->flash.application());
    return image ? image->version : std::string();
}

Overrides Unit::overrides() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->overrides;
}

void Unit::setKnobs(const Overrides& overrides)
{
    adjust([&overrides](Overrides& current) { current = overrides; });
}

void Unit::adjust(const std::function<void(Overrides&)>& change)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    Overrides changed = d->overrides;
    change(changed);
    d->flash.setPageSize(changed.pageSize);
    d->overrides = changed;
}

void Unit::addFault(const Fault& fault)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->faults.add(fault);
}

void Unit::clearFaults()
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->faults.clear();
    d->bootloader.stayBusy(0);
}

void Unit::restartCounting()
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->faults.restartCounting();
}

std::vector<TraceEntry> Unit::trace() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->trace;
}

void Unit::clearTrace()
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->trace.clear();
}

Dfu::State Unit::dfuState() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    return d->bootloader.state();
}

Bytes Unit::readFlash(std::uint32_t address, std::size_t length) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->bootloader.settle(d->now());
    return d->flash.read(address, length);
}

Bytes Unit::applicationContent() const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->bootloader.settle(d->now());
    Bytes content = d->flash.application();
    if (const auto image = readImage(content)) {
        content.resize(image->length);
        return content;
    }
    const auto last = std::find_if(content.rbegin(), content.rend(),
                                   [](std::uint8_t byte) { return byte != 0xFF; });
    content.erase(last.base(), content.end());
    return content;
}

void Unit::fillApplication(std::uint8_t value)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->flash.fillApplication(value);
}

void Unit::loadImage(const Bytes& image)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->flash.loadApplication(image);
}

} // namespace VirtualUnit
