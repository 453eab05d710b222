#include "bus/Bus.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <stdexcept>

namespace VirtualUnit {

struct Bus::Private
{
    /// A unit that was ever plugged in; its port stays its own.
    struct Slot
    {
        P_Unit unit;
        unsigned port = 0;
        bool present = false;
        Address address;
        unsigned arrivals = 0;
        unsigned generation = 0; ///< changes with every arrival and removal: outdates plans
    };

    explicit Private(std::unique_ptr<BusHost> busHost)
        : host(std::move(busHost))
    {
    }

    Slot* find(const P_Unit& unit);
    Slot& findOrAdd(const P_Unit& unit);
    void add(Slot& slot);
    void remove(Slot& slot, Unit::Reason reason);
    void depart(const P_Unit& unit, unsigned generation, std::optional<milliseconds> returnAfter);
    void returnLater(const P_Unit& unit, unsigned generation, milliseconds delay);
    bool waitFor(const P_Unit& unit, bool present, milliseconds timeout);
    void endTransit();
    void tell(const P_Unit& unit, Event event) const;

    std::mutex mutex; ///< never taken by the host's threads, which the host may wait for
    std::condition_variable changed;
    std::shared_ptr<Scheduler> scheduler = std::make_shared<Scheduler>();
    std::unique_ptr<BusHost> host;
    std::vector<std::unique_ptr<Slot>> slots;
    Observer observer;
    std::atomic<int> inTransit{0}; ///< departures and returns that are planned
};

Bus::Bus(std::unique_ptr<BusHost> host)
    : d(std::make_unique<Private>(std::move(host)))
{
}

Bus::~Bus()
{
    d->scheduler->stop();
    const std::lock_guard<std::mutex> lock(d->mutex);
    for (const auto& slot : d->slots) {
        if (slot->present)
            d->remove(*slot, Unit::Reason::Unplugged);
    }
}

Bus::Private::Slot* Bus::Private::find(const P_Unit& unit)
{
    const auto found = std::find_if(slots.begin(), slots.end(),
                                    [&unit](const auto& slot) { return slot->unit == unit; });
    return found == slots.end() ? nullptr : found->get();
}

Bus::Private::Slot& Bus::Private::findOrAdd(const P_Unit& unit)
{
    Slot* known = find(unit);
    if (known != nullptr)
        return *known;
    if (slots.size() >= host->ports())
        throw std::runtime_error("the virtual bus is full");
    auto slot = std::make_unique<Slot>();
    slot->unit = unit;
    slot->port = static_cast<unsigned>(slots.size()) + 1;
    slots.push_back(std::move(slot));
    return *slots.back();
}

void Bus::Private::add(Slot& slot)
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
    slot.address = host->add(slot.port, unit, scheduler, onDeparture);
    slot.present = true;
    ++slot.arrivals;
    changed.notify_all();
}

void Bus::Private::remove(Slot& slot, Unit::Reason reason)
{
    ++slot.generation;
    host->remove(slot.port);
    slot.present = false;
    slot.address = {};
    slot.unit->leave(reason);
    changed.notify_all();
}

void Bus::Private::depart(const P_Unit& unit, unsigned generation,
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

void Bus::Private::endTransit()
{
    --inTransit;
    changed.notify_all();
}

void Bus::Private::returnLater(const P_Unit& unit, unsigned generation, milliseconds delay)
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

void Bus::Private::tell(const P_Unit& unit, Event event) const
{
    if (observer)
        observer(unit, event);
}

bool Bus::Private::waitFor(const P_Unit& unit, bool present, milliseconds timeout)
{
    std::unique_lock<std::mutex> lock(mutex);
    return changed.wait_for(lock, timeout, [&] {
        const Slot* slot = find(unit);
        return (slot != nullptr && slot->present) == present;
    });
}

void Bus::plug(const P_Unit& unit)
{
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        Private::Slot& slot = d->findOrAdd(unit);
        if (slot.present)
            return;
        d->add(slot);
    }
    d->tell(unit, Event::Arrived);
}

void Bus::unplug(const P_Unit& unit)
{
    {
        const std::lock_guard<std::mutex> lock(d->mutex);
        Private::Slot* slot = d->find(unit);
        if (slot == nullptr)
            return;
        if (!slot->present) {
            ++slot->generation;
            slot->unit->leave(Unit::Reason::Unplugged);
            return;
        }
        d->remove(*slot, Unit::Reason::Unplugged);
    }
    d->tell(unit, Event::Left);
}

void Bus::replug(const P_Unit& unit, milliseconds away)
{
    unplug(unit);
    const std::lock_guard<std::mutex> lock(d->mutex);
    const Private::Slot& slot = d->findOrAdd(unit);
    d->returnLater(unit, slot.generation, away);
}

bool Bus::isPlugged(const P_Unit& unit) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    const Private::Slot* slot = d->find(unit);
    return slot != nullptr && slot->present;
}

bool Bus::waitUntilPlugged(const P_Unit& unit, milliseconds timeout) const
{
    return d->waitFor(unit, true, timeout);
}

bool Bus::waitUntilUnplugged(const P_Unit& unit, milliseconds timeout) const
{
    return d->waitFor(unit, false, timeout);
}

bool Bus::waitUntilSettled(milliseconds timeout) const
{
    std::unique_lock<std::mutex> lock(d->mutex);
    return d->changed.wait_for(lock, timeout, [this] { return d->inTransit == 0; });
}

unsigned Bus::arrivals(const P_Unit& unit) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    const Private::Slot* slot = d->find(unit);
    return slot == nullptr ? 0 : slot->arrivals;
}

Address Bus::address(const P_Unit& unit) const
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    const Private::Slot* slot = d->find(unit);
    return slot == nullptr ? Address{} : slot->address;
}

void Bus::setObserver(Observer observer)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    d->observer = std::move(observer);
}

} // namespace VirtualUnit
