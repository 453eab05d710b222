#pragma once

#include "bus/Scheduler.h"
#include "unit/Unit.h"

namespace VirtualUnit {

/// Where a unit sits on the bus. Device numbers are given out anew on each arrival.
struct Address
{
    std::uint8_t bus = 0;
    std::uint8_t device = 0;
};

/// What makes plugged-in units visible to the clients of a machine: a mocked system, or the kernel.
/// Not thread-safe; the bus locks.
class BusHost
{
public:
    using OnDeparture = std::function<void(milliseconds, const Departure&)>;

    BusHost() = default;
    BusHost(const BusHost&) = delete;
    BusHost& operator=(const BusHost&) = delete;
    virtual ~BusHost() = default;

    /// How many units may be known; ports count from 1.
    virtual unsigned ports() const = 0;

    /// Shows the unit at a free port. From then on its requests are answered; @p onDeparture is
    /// called, with the delay of the answer and on any thread, when an answer says that the unit
    /// leaves. Late answers are given from @p scheduler. Gives the place; zeros where only the
    /// machine's system knows it. Throws std::runtime_error and leaves nothing behind.
    virtual Address add(unsigned port, const P_Unit& unit,
                        const std::shared_ptr<Scheduler>& scheduler,
                        const OnDeparture& onDeparture) = 0;

    /// Takes the unit at the port away; clients that have it open are told. When it returns, no
    /// request of theirs reaches the unit any more.
    virtual void remove(unsigned port) = 0;
};

} // namespace VirtualUnit
