// SPDX-License-Identifier: LicenseRef-Proprietary
#include "bus/Bus.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace VirtualUnit {

using Lock = std::lock_guard<std::mutex>;

Bus::Bus(std::unique_ptr<BusHost> host)
    : m_host(std::move(host))
{
}

Bus::~Bus()
{
    m_scheduler.stop();
    const Lock lock(m_mutex);
    for (const auto& slot : m_slots) {
        if (slot->present)
            remove(*slot, Unit::Reason::Unplugged);
    }
}

Bus::Slot* Bus::find(const P_Unit& unit) const
{
    const auto found = std::find_if(m_slots.begin(), m_slots.end(),
                                    [&unit](const auto& slot) { return slot->unit == unit; });
    return found == m_slots.end() ? nullptr : found->get();
}

Bus::Slot& Bus::findOrAdd(const P_Unit& unit)
{
    // cppcheck-suppress constVariable; it is returned as it is
    if (Slot* known = find(unit))
        return *known;
    if (m_slots.size() >= m_host->ports())
        throw std::runtime_error("the virtual bus is full");
    m_slots.push_back(std::make_unique<Slot>());
    m_slots.back()->unit = unit;
    m_slots.back()->port = static_cast<unsigned>(m_slots.size());
    return *m_slots.back();
}

void Bus::add(Slot& slot)
{
    const unsigned generation = ++slot.generation;
    const auto onDeparture = [this, &slot, generation](milliseconds delay,
                                                       const Departure& departure) {
        later(slot, generation, delay + departure.after,
              [this, &slot, returnAfter = departure.returnAfter] {
                  remove(slot, Unit::Reason::Restarted);
                  if (returnAfter)
                      returnLater(slot, *returnAfter);
              });
    };
    slot.unit->arrive();
    m_host->add(slot.port, slot.unit, onDeparture);
    slot.present = true;
}

void Bus::remove(Slot& slot, Unit::Reason reason)
{
    ++slot.generation;
    m_host->remove(slot.port);
    slot.present = false;
    slot.unit->leave(reason);
}

/// Does @p action after @p delay unless the unit comes or goes before that.
void Bus::later(Slot& slot, unsigned generation, milliseconds delay, std::function<void()> action)
{
    ++m_inTransit;
    m_scheduler.after(delay, [this, &slot, generation, action = std::move(action)] {
        const Lock lock(m_mutex);
        if (slot.generation == generation)
            action();
        --m_inTransit;
        m_changed.notify_all();
    });
}

void Bus::returnLater(Slot& slot, milliseconds delay)
{
    later(slot, slot.generation, delay, [this, &slot] {
        try {
            add(slot);
        } catch (const std::exception& error) {
            std::cerr << "virtual bus: a unit cannot return: " << error.what() << '\n';
        }
    });
}

void Bus::plug(const P_Unit& unit)
{
    const Lock lock(m_mutex);
    Slot& slot = findOrAdd(unit);
    if (!slot.present)
        add(slot);
}

void Bus::unplug(const P_Unit& unit)
{
    const Lock lock(m_mutex);
    Slot* slot = find(unit);
    if (slot == nullptr)
        return;
    if (slot->present) {
        remove(*slot, Unit::Reason::Unplugged);
    } else {
        ++slot->generation;
        slot->unit->leave(Unit::Reason::Unplugged);
    }
}

void Bus::replug(const P_Unit& unit, milliseconds away)
{
    unplug(unit);
    const Lock lock(m_mutex);
    returnLater(findOrAdd(unit), away);
}

bool Bus::isPlugged(const P_Unit& unit) const
{
    const Lock lock(m_mutex);
    const Slot* slot = find(unit);
    return slot != nullptr && slot->present;
}

bool Bus::waitUntilSettled(milliseconds timeout) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [this] { return m_inTransit == 0; });
}

} // namespace VirtualUnit
