#pragma once

#include "Unit.h"

namespace VirtualUnit {

/// Where a unit sits on the bus. Device numbers are given out anew on each arrival.
struct Address
{
    std::uint8_t bus = 0;
    std::uint8_t device = 0;
};

/// A USB bus of this machine that has only virtual units on it. While it lives, this process and
/// the children it starts see it, and it alone, below /sys and /dev, so that the real libusb serves
/// the units. Units that leave by themselves return by themselves.
///
/// The process has to run with umockdev's library preloaded (see available()). One bus at a time.
/// Any thread may call it. Limits: hosts can miss an arrival or an absence shorter than 100 ms.
class VirtualBus
{
public:
    enum class Event
    {
        Arrived,
        Left,
    };
    using Observer = std::function<void(const P_Unit&, Event)>;

    /// Throws std::runtime_error when the library is not preloaded.
    VirtualBus();
    VirtualBus(const VirtualBus&) = delete;
    VirtualBus& operator=(const VirtualBus&) = delete;
    /// Takes all units off. Clients that have one open are told that it is gone; they cost 200 ms.
    ~VirtualBus();

    /// Whether the library is preloaded into this process.
    static bool available();

    /// Puts a unit on the bus; one that is there stays. Throws std::runtime_error when the bus is
    /// full (50 units known) or the machine refuses.
    void plug(const P_Unit& unit);

    /// Takes a unit off as a pulled cable does. One that is away does not return by itself any
    /// more.
    void unplug(const P_Unit& unit);

    /// Unplugs a unit and plugs it in again after \a away. Does not wait.
    void replug(const P_Unit& unit, milliseconds away = milliseconds(300));

    bool isPlugged(const P_Unit& unit) const;

    /// Waits until the unit is on the bus (or off it) and tells whether that came in time.
    bool waitUntilPlugged(const P_Unit& unit, milliseconds timeout) const;
    bool waitUntilUnplugged(const P_Unit& unit, milliseconds timeout) const;

    /// Waits until no unit is about to leave or to return and tells whether that came in time.
    bool waitUntilSettled(milliseconds timeout) const;

    /// How often the unit has come to the bus.
    unsigned arrivals(const P_Unit& unit) const;

    /// The unit's place; zeros while it is off the bus.
    Address address(const P_Unit& unit) const;

    /// Called after each arrival and each removal, on the thread that caused it, without locks
    /// held. Set before the first unit is plugged in.
    void setObserver(Observer observer);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace VirtualUnit
