// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/Unit.h"

#include "unit/RequestName.h"

#include <algorithm>

namespace VirtualUnit {

using Lock = std::lock_guard<std::mutex>;

Unit::Unit(const UnitSetup& setup, Now now)
    : m_now(std::move(now))
    , m_openError(setup.openError)
    , m_identity{setup.kind, setup.firmware ? setup.mode : Mode::Bootloader, setup.usbSerial}
{
    m_overrides.serialName = setup.serialName;
    constexpr std::size_t imageSize = 16384;
    if (setup.firmware)
        m_flash.loadApplication(makeImage(imageSize, *setup.firmware));
}

Response Unit::respond(const SetupPacket& setup, const Bytes& data)
{
    if (setup.type() == SetupPacket::Standard)
        return m_standard.handle(setup);
    if (m_identity.mode == Mode::Bootloader)
        return m_bootloader.handle(setup, data, m_now());
    Response response = m_application.handle(setup);
    if (response.departure)
        m_wantsBootloader = true;
    return response;
}

Response Unit::respondWithFaults(const SetupPacket& setup, const Bytes& data)
{
    std::size_t limit = setup.wLength;
    std::optional<Response> instead;
    milliseconds delay{0};
    for (Fault& fault : m_faults) {
        if (!fault.strikes(setup, data))
            continue;
        switch (fault.action) {
        case Fault::Action::Stall:
            instead = Response::stall();
            break;
        case Fault::Action::Silence:
            instead = Response::silence();
            break;
        case Fault::Action::ShortAnswer:
            limit = std::min<std::size_t>(limit, fault.value);
            break;
        case Fault::Action::FailStatus:
            if (m_identity.mode == Mode::Bootloader && setup.type() == SetupPacket::Class)
                m_bootloader.failNext(static_cast<Dfu::Status>(fault.value));
            else
                instead = Response::stall();
            break;
        case Fault::Action::LeaveBus:
            instead = Response::silence();
            instead->departure = Departure{milliseconds(0), m_overrides.returnDelay};
            break;
        case Fault::Action::NeverReturn:
            m_overrides.returns = false;
            break;
        case Fault::Action::StayBusy:
            m_bootloader.stayBusy(fault.value);
            break;
        case Fault::Action::Delay:
            delay += milliseconds(fault.value);
            break;
        }
    }
    Response response = instead ? *instead : respond(setup, data);
    response.data.resize(std::min(response.data.size(), limit));
    response.delay = delay;
    if (response.departure && !m_overrides.returns)
        response.departure->returnAfter.reset();
    return response;
}

Response Unit::control(const SetupPacket& setup, const Bytes& data)
{
    const Lock lock(m_mutex);
    const Mode before = m_identity.mode;
    Response response = respondWithFaults(setup, data);
    m_trace.push_back(
        {m_now(), before, requestName(setup, data), setup, data, response.kind, response.data});
    return response;
}

void Unit::arrive()
{
    const Lock lock(m_mutex);
    m_standard.reset();
    if (m_hasArrived) {
        const bool toBootloader = m_wantsBootloader || image().length == 0;
        m_identity.mode = toBootloader ? Mode::Bootloader : Mode::Application;
    }
    m_hasArrived = true;
    m_wantsBootloader = false;
}

void Unit::leave(Reason reason)
{
    const Lock lock(m_mutex);
    m_bootloader.reset(m_now());
    if (reason == Reason::Unplugged)
        m_wantsBootloader = false;
}

void Unit::busReset()
{
    const Lock lock(m_mutex);
    m_bootloader.reset(m_now());
    m_standard.reset();
}

Bytes Unit::descriptors() const
{
    const Lock lock(m_mutex);
    Bytes bytes = Descriptors::device(m_identity);
    const Bytes configuration = Descriptors::configuration(m_identity, m_overrides);
    bytes.insert(bytes.end(), configuration.begin(), configuration.end());
    return bytes;
}

std::string Unit::stringText(std::uint8_t index) const
{
    const Lock lock(m_mutex);
    return Descriptors::text(index, m_identity, m_overrides);
}

Mode Unit::mode() const
{
    const Lock lock(m_mutex);
    return m_identity.mode;
}

ImageInfo Unit::image() const
{
    m_bootloader.settle(m_now());
    return readImage(m_flash.application());
}

std::string Unit::firmwareVersion() const
{
    const Lock lock(m_mutex);
    return image().version;
}

void Unit::adjust(const std::function<void(Overrides&)>& change)
{
    const Lock lock(m_mutex);
    change(m_overrides);
}

void Unit::addFault(const Fault& fault)
{
    const Lock lock(m_mutex);
    m_faults.push_back(fault);
}

void Unit::clearFaults()
{
    const Lock lock(m_mutex);
    m_faults.clear();
    m_bootloader.stayBusy(0);
}

std::vector<TraceEntry> Unit::trace() const
{
    const Lock lock(m_mutex);
    return m_trace;
}

void Unit::clearTrace()
{
    const Lock lock(m_mutex);
    m_trace.clear();
}

Dfu::State Unit::dfuState() const
{
    const Lock lock(m_mutex);
    return m_bootloader.state();
}

Bytes Unit::applicationContent() const
{
    const Lock lock(m_mutex);
    std::size_t length = image().length;
    Bytes content = m_flash.application();
    if (length == 0) {
        const auto last = std::find_if(content.rbegin(), content.rend(),
                                       [](std::uint8_t byte) { return byte != 0xFF; });
        length = static_cast<std::size_t>(content.rend() - last);
    }
    content.resize(length);
    return content;
}

void Unit::loadImage(const Bytes& image)
{
    const Lock lock(m_mutex);
    m_flash.loadApplication(image);
}

} // namespace VirtualUnit
