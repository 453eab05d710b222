// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Unit.h"

namespace VirtualUnit {

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
    /// leaves. Throws std::runtime_error and leaves nothing behind.
    virtual void add(unsigned port, const P_Unit& unit, const OnDeparture& onDeparture) = 0;

    /// Takes the unit at the port away; clients that have it open notice. When it returns, no
    /// further request reaches the unit.
    virtual void remove(unsigned port) = 0;
};

} // namespace VirtualUnit
