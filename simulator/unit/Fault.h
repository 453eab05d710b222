#pragma once

#include "unit/SetupPacket.h"

#include <functional>
#include <string>

namespace VirtualUnit {

/// Something that goes wrong at a chosen request. A plain value, given to Unit::addFault.
struct Fault
{
    enum class Action
    {
        Stall,       ///< refuse the request; the unit's state stays as it is
        Silence,     ///< do not answer; the unit did not see the request
        ShortAnswer, ///< cut the answer to `value` bytes
        FailStatus,  ///< bootloader: fail with bStatus `value` (a download when its work is done)
        LeaveBus,    ///< drop off the bus instead of answering; it returns as Overrides say
        NeverReturn, ///< from here on, once the unit has left it stays away
        StayBusy,    ///< bootloader: `value` further GETSTATUS are answered dfuDNBUSY
        Delay,       ///< answer `value` milliseconds later
    };
    static constexpr unsigned Forever = ~0U; ///< as `value` of StayBusy, or as `times`

    using Predicate = std::function<bool(const SetupPacket&, const Bytes&)>;

    Action action = Action::Stall;
    unsigned value = 0;
    Predicate matches;  ///< which requests count; every one when empty
    unsigned first = 1; ///< the counted request at which it begins (1: the first from now on)
    unsigned times = 1; ///< at how many counted requests in a row

    /// At the @p number-th control request of any kind from the start point (see Unit::addFault).
    static Fault at(unsigned number, Action action, unsigned value = 0);

    /// At the @p first-th request of that name (see requestName).
    /// @throws std::invalid_argument when no request goes by it: such a fault would never happen.
    static Fault on(const std::string& name, Action action, unsigned value = 0, unsigned first = 1);
};

} // namespace VirtualUnit
