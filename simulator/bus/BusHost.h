// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Unit.h"

namespace VirtualUnit {

/// Where a unit is on the bus. Each arrival gets another device number.
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

    /// Shows the unit at a free port. From then on its requests are handled; @p onDeparture is
    /// called, with the delay of the response and on any thread, when the unit announces that it
    /// leaves. Returns zeros where only the machine's system knows the place. Throws
    /// std::runtime_error and leaves nothing behind.
    virtual Address add(unsigned port, const P_Unit& unit, const OnDeparture& onDeparture) = 0;

    /// Takes the unit at the port away; clients that have it open notice. When it returns, no
    /// further request reaches the unit.
    virtual void remove(unsigned port) = 0;
};

} // namespace VirtualUnit
