#pragma once

#include "unit/SetupPacket.h"

#include <chrono>
#include <optional>

namespace VirtualUnit {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// That a unit drops off the bus of its own accord, and whether it comes back.
struct Departure
{
    milliseconds after{0};                   ///< from the answer to the disappearance
    std::optional<milliseconds> returnAfter; ///< from there to the return; none: it stays away
};

/// What a unit does with one control request. The bus that hosts it carries this out.
struct Answer
{
    enum class Kind
    {
        Data,        ///< an IN request is answered with `data`
        Acknowledge, ///< an OUT request is accepted
        Stall,       ///< the request is refused (STALL handshake)
        Silence,     ///< nothing ever comes: the host runs into its time-out
    };

    Kind kind = Kind::Stall;
    Bytes data;
    milliseconds delay{0}; ///< from the request to the answer
    std::optional<Departure> departure;

    static Answer withData(Bytes bytes) { return {Kind::Data, std::move(bytes), {}, {}}; }
    static Answer acknowledge() { return {Kind::Acknowledge, {}, {}, {}}; }
    static Answer stall() { return {Kind::Stall, {}, {}, {}}; }
    static Answer silence() { return {Kind::Silence, {}, {}, {}}; }
};

} // namespace VirtualUnit
