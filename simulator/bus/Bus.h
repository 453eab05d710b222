// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/BusHost.h"
#include "bus/Scheduler.h"

#include <atomic>

namespace VirtualUnit {

/// A USB bus with virtual units. Units that leave by themselves return by themselves. Its host
/// decides where clients see them. Any thread may call it.
class Bus
{
public:
    explicit Bus(std::unique_ptr<BusHost> host);
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;
    /// Takes all units off. Clients that have one open notice that it is gone.
    ~Bus();

    /// Puts a unit on the bus; one that is there stays. Throws std::runtime_error when the bus is
    /// full (BusHost::ports) or the machine refuses.
    void plug(const P_Unit& unit);

    /// Takes a unit off as a pulled cable does. A unit that is away does not return by itself any
    /// more.
    void unplug(const P_Unit& unit);

    /// Unplugs a unit and plugs it in again after @p away. Does not wait.
    void replug(const P_Unit& unit, milliseconds away = milliseconds(300));

    bool isPlugged(const P_Unit& unit) const;

    /// Waits until no unit is about to leave or to return. False if that took longer than
    /// @p timeout.
    bool waitUntilSettled(milliseconds timeout) const;

private:
    /// A unit that was ever plugged in; it keeps its port. Slots are never removed.
    struct Slot
    {
        P_Unit unit;
        unsigned port = 0;
        bool present = false;
        unsigned generation = 0; ///< changes with every arrival and removal: outdates plans
    };

    // All with the lock held, but for later().
    Slot* find(const P_Unit& unit) const;
    Slot& findOrAdd(const P_Unit& unit);
    void add(Slot& slot);
    void remove(Slot& slot, Unit::Reason reason);
    void later(Slot& slot, unsigned generation, milliseconds delay, std::function<void()> action);
    void returnLater(Slot& slot, milliseconds delay);

    mutable std::mutex m_mutex; ///< never taken by the host's threads, which the host may wait for
    mutable std::condition_variable m_changed;
    std::vector<std::unique_ptr<Slot>> m_slots;
    std::atomic<int> m_inTransit{0}; ///< departures and returns that are planned
    std::unique_ptr<BusHost> m_host;
    Scheduler m_scheduler;
};

} // namespace VirtualUnit
