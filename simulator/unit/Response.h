// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/SetupPacket.h"

#include <chrono>
#include <optional>

namespace VirtualUnit {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// A unit leaves the bus by itself and may return.
struct Departure
{
    milliseconds after{0};                   ///< from the response to the disappearance
    std::optional<milliseconds> returnAfter; ///< from there to the return; none: it stays away
};

/// What a unit does with one control request. The bus that hosts the unit carries it out.
struct Response
{
    enum class Kind
    {
        Data,        ///< an IN request gets `data`
        Acknowledge, ///< an OUT request is accepted
        Stall,       ///< the request is refused (STALL handshake)
        Silence,     ///< nothing is ever sent: the host runs into its timeout
    };

    Kind kind = Kind::Stall;
    Bytes data;
    milliseconds delay{0}; ///< from the request to the response
    std::optional<Departure> departure;

    static Response withData(Bytes bytes) { return {Kind::Data, std::move(bytes), {}, {}}; }
    static Response acknowledge() { return {Kind::Acknowledge, {}, {}, {}}; }
    static Response stall() { return {Kind::Stall, {}, {}, {}}; }
    static Response silence() { return {Kind::Silence, {}, {}, {}}; }
};

} // namespace VirtualUnit
