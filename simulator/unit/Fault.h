// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/SetupPacket.h"

#include <functional>
#include <string>

namespace VirtualUnit {

/// A fault at a chosen request. A plain value, given to Unit::addFault.
struct Fault
{
    enum class Action
    {
        Stall,       ///< refuse the request; the unit's state stays as it is
        Silence,     ///< do not respond; the unit did not see the request
        ShortAnswer, ///< cut the response to `value` bytes
        FailStatus,  ///< bootloader: fail with bStatus `value` (a download when its work is done)
        LeaveBus,    ///< leave the bus instead of responding; it returns as the overrides specify
        NeverReturn, ///< from here on, once the unit has left it stays away
        StayBusy,    ///< bootloader: `value` further GETSTATUS report dfuDNBUSY
        Delay,       ///< respond `value` milliseconds later
    };
    static constexpr unsigned Forever = ~0U; ///< as `value` of StayBusy, or as `times`

    Action action = Action::Stall;
    unsigned value = 0;
    std::string request = "any"; ///< which requests count, see matchesName()
    unsigned first = 1;          ///< the counted request at which it begins (1: the next one)
    unsigned times = 1;          ///< at how many counted requests in a row
    unsigned counted = 0;        ///< so far
    /// Called when it happens, under the unit's lock: must not call the unit.
    std::function<void()> onStrike = {};

    /// At the @p first-th request of that name. Throws std::invalid_argument when no request has
    /// it: such a fault would never happen.
    static Fault on(const std::string& name, Action action, unsigned value = 0, unsigned first = 1);

    /// Counts the request if it has the fault's name. True when the fault happens at it.
    bool strikes(const SetupPacket& setup, const Bytes& data);
};

} // namespace VirtualUnit
