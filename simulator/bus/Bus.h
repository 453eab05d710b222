#pragma once

#include "bus/BusHost.h"

namespace VirtualUnit {

/// A USB bus with virtual units on it: which are plugged in, which are on their way. Units that
/// leave by themselves return by themselves. Where clients see them is its host's business. Any
/// thread may call it.
class Bus
{
public:
    enum class Event
    {
        Arrived,
        Left,
    };
    using Observer = std::function<void(const P_Unit&, Event)>;

    explicit Bus(std::unique_ptr<BusHost> host);
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;
    /// Takes all units off. Clients that have one open are told that it is gone.
    ~Bus();

    /// Puts a unit on the bus; one that is there stays. Throws std::runtime_error when the bus is
    /// full (BusHost::ports) or the machine refuses.
    void plug(const P_Unit& unit);

    /// Takes a unit off as a pulled cable does. One that is away does not return by itself any
    /// more.
    void unplug(const P_Unit& unit);

    /// Unplugs a unit and plugs it in again after @p away. Does not wait.
    void replug(const P_Unit& unit, milliseconds away = milliseconds(300));

    bool isPlugged(const P_Unit& unit) const;

    /// Waits until the unit is on the bus (or off it) and tells whether that came in time.
    bool waitUntilPlugged(const P_Unit& unit, milliseconds timeout) const;
    bool waitUntilUnplugged(const P_Unit& unit, milliseconds timeout) const;

    /// Waits until no unit is about to leave or to return and tells whether that came in time.
    bool waitUntilSettled(milliseconds timeout) const;

    /// How often the unit has come to the bus.
    unsigned arrivals(const P_Unit& unit) const;

    /// The unit's place; zeros while it is off the bus, and where the bus does not know it.
    Address address(const P_Unit& unit) const;

    /// Called after each arrival and each removal, on the thread that caused it, without locks
    /// held. Set before the first unit is plugged in.
    void setObserver(Observer observer);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace VirtualUnit
