#include "VirtualBus.h"

#include "Testbed.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <dlfcn.h>
#include <iostream>
#include <mutex>
#include <stdexcept>

namespace VirtualUnit {

namespace {

constexpr std::size_t maximumUnits = 50;
constexpr std::uint8_t lastDeviceNumber = 127;

} // namespace

struct VirtualBus::Private
{
    /// A unit that was ever plugged in; its port stays its own.
    struct Slot
    {
        P_Unit unit;
        unsigned port = 0;
        std::uint8_t device = 0; ///< 0: off the bus
        unsigned arrivals = 0;
        unsigned generation = 0;     ///< changes with every arrival and removal: outdates plans
        Testbed::Attachment present; ///< empty: off the bus
    };

    Slot* find(const P_Unit& unit);
    Slot& findOrAdd(const P_Unit& unit);
    std::uint8_t nextDeviceNumber();
    void add(Slot& slot);
    void remove(Slot& slot, Unit::Reason reason);
    void depart(const P_Unit& unit, unsigned generation, std::optional<milliseconds> returnAfter);
    void returnLater(const P_Unit& unit, unsigned generation, milliseconds delay);
    bool waitFor(const P_Unit& unit, bool present, milliseconds timeout);
    void endTransit();
    void tell(const P_Unit& unit, Event event) const;

    std::mutex mutex; ///< never taken by the testbed's thread, which the testbed may wait for
    std::condition_variable changed;
    std::shared_ptr<Scheduler> scheduler = std::make_shared<Scheduler>();
    Testbed testbed;
    std::vector<std::unique_ptr<Slot>> slots;
    std::uint8_t lastDevice = 1; // the root hub
    Observer observer;
    std::atomic<int> inTransit{0}; ///< departures and returns that are planned
};

bool VirtualBus::available()
{
    const char* preload = std::getenv("LD_PRELOAD");
    return preload != nullptr &&
           std::string(preload).find("libumockdev-preload") != std::string::npos;
}

VirtualBus::VirtualBus()
{
    if (!available())
        throw std::runtime_error("the virtual bus needs LD_PRELOAD=libumockdev-preload.so.0");
    d = std::make_unique<Private>();
}

VirtualBus::~VirtualBus()
{
    d->scheduler->stop();
    const std::lock_guard<std::mutex> lock(d->mutex);
    for (const auto& slot : d->slots) {
        if (slot->device != 0)
            d->remove(*slot, Unit::Reason::Unplugged);
    }
}

VirtualBus::Private::Slot* VirtualBus::Private::find(const P_Unit& unit)
{
    const auto found = std::find_if(slots.begin(), slots.end(),
                                    [&unit](const auto& slot) { return slot->unit == unit; });
    return found == slots.end() ? nullptr : found->get();
}

VirtualBus::Private::Slot& VirtualBus::Private::findOrAdd(const P_Unit& unit)
{
    Slot* known = find(unit);
    if (known != nullptr)
        return *known;
    if (slots.size() >= maximumUnits)
        throw std::runtime_error("the virtual bus is full");
    auto slot = std::make_unique<Slot>();
    slot->unit = unit;
    slot->port = static_cast<unsigned>(slots.size()) + 1;
    slots.push_back(std::move(slot));
    return *slots.back();
}

std::uint8_t VirtualBus::Private::nextDeviceNumber()
{
    const auto taken = [this](std::uint8_t number) {
        return std::any_of(slots.begin(), slots.end(),
                           [number](const auto& slot) { return slot->device == number; });
    };
    do {
        lastDevice = lastDevice == lastDeviceNumber ? std::uint8_t{2}
                                                    : static_cast<std::uint8_t>(lastDevice + 1);
    } while (taken(lastDevice));
    return lastDevice;
}

void VirtualBus::Private::add(Slot& slot)
{
    const unsigned generation = ++slot.generation;
    const P_Unit unit = slot.unit;
    const auto onDeparture = [this, unit, generation](milliseconds delay,
                                                      const Departure& departure) {
        ++inTransit;
        scheduler->after(delay + departure.after, [this, unit, generation, departure] {
            depart(unit, generation, departure.returnAfter);
        });
    };
    unit->arrive();
    const std::uint8_t device = nextDeviceNumber();
    slot.present = testbed.add({slot.port, device}, unit, scheduler, onDeparture);
    slot.device = device;
    ++slot.arrivals;
    changed.notify_all();
}

void VirtualBus::Private::remove(Slot& slot, Unit::Reason reason)
{
    ++slot.generation;
    testbed.remove({slot.port, slot.device}, std::move(slot.present));
    slot.present = {};
    slot.device = 0;
    slot.unit->leave(reason);
    changed.notify_all();
}

void VirtualBus::Private::depart(const P_Unit& unit, unsigned generation,
                                 std::optional<milliseconds> returnAfter)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        Slot* slot = find(unit);
        if (slot == nullptr || slot->generation != generation) {
            endTransit();
            return;
        }
        remove(*slot, Unit::Reason::Restarted);
        if (returnAfter)
            returnLater(unit, slot->generation, *returnAfter);
        endTransit();
    }
    tell(unit, Event::Left);
}

void VirtualBus::Private::endTransit()
{
    --inTransit;
    changed.notify_all();
}

void VirtualBus::Private::returnLater(const P_Unit& unit, unsigned generation, milliseconds delay)
{
    ++inTransit;
    scheduler->after(delay, [this, unit, generation] {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            endTransit();
            Slot* slot = find(unit);
            if (slot == nullptr || slot->generation != generation)
                return;
            try {
                add(*slot);
            } catch (const std::exception& error) {
                std::cerr << "virtual bus: a unit cannot return: " << error.what() << '\n';
                return;
            }
        }
        tell(unit, Event::Arrived);
    });
}

void VirtualBus::Private::tell(const P_Unit& unit, Event event) const
{
    if (observer)
        observer(unit, event);
}

bool VirtualBus::Private::waitFor(const P_Unit& unit, bool present, milliseconds timeout)
{
    std::unique_lock<std::mutex> lock(mutex);
    return changed.wait_for(lock, timeout, [&] {
        const Slot* slot = find(unit);
        return (slot != nullptr && slot->device != 0) == present;
    });
}

void VirtualBus::plug(const P_Unit& unit)
{
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        Private::Slot& slot = d->findOrAdd(unit);
        if (slot.device != 0)
            return;
        d->add(slot);
    }
    d->tell(unit, Event::Arrived);
}

void VirtualBus::unplug(const P_Unit& unit)
{
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        Private::Slot* slot = d->find(unit);
        if (slot == nullptr)
            return;
        if (slot->device == 0) {
            ++slot->generation;
            slot->unit->leave(Unit::Reason::Unplugged);
            return;
        }
        d->remove(*slot, Unit::Reason::Unplugged);
    }
    d->tell(unit, Event::Left);
}

void VirtualBus::replug(const P_Unit& unit, milliseconds away)
{
    unplug(unit);
    const std::lock_guard<std::mutex> lock(d->mutex);
    const Private::Slot& slot = d->findOrAdd(unit);
    d->returnLater(unit, slot.generation, away);
}

bool VirtualBus::isPlugged(const P_Unit& unit) const
{
    return address(unit).device != 0;
}

bool VirtualBus::waitUntilPlugged(const P_Unit& unit, milliseconds timeout) const
{
    return d->waitFor(unit, true, timeout);
}

bool VirtualBus::waitUntilUnplugged(const P_Unit& unit, milliseconds timeout) const
{
    return d->waitFor(unit, false, timeout);
}

bool VirtualBus::waitUntilSettled(milliseconds timeout) const
{
    std::unique_lock<std::mutex> lock(d->mutex);
    return d->changed.wait_for(lock, timeout, [this] { return d->inTransit == 0; });
}

unsigned VirtualBus::arrivals(const P_Unit& unit) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    const Private::Slot* slot = d->find(unit);
    return slot == nullptr ? 0 : slot->arrivals;
}

Address VirtualBus::address(const P_Unit& unit) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    const Private::Slot* slot = d->find(unit);
    if (slot == nullptr || slot->device == 0)
        return {};
    return {Testbed::BusNumber, slot->device};
}

void VirtualBus::setObserver(Observer observer)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->observer = std::move(observer);
}

} // namespace VirtualUnit
