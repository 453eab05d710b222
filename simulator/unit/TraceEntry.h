#pragma once

#include "unit/Descriptors.h"
#include "unit/Protocol.h"

namespace VirtualUnit {

/// One control request as a unit saw it, and what it did. A plain value.
struct TraceEntry
{
    Clock::time_point time;
    Mode mode = Mode::Application; ///< the unit's mode when it was asked
    std::string name;              ///< see requestName()
    SetupPacket setup;
    Bytes payload;                              ///< what the host sent
    Answer::Kind outcome = Answer::Kind::Stall; ///< what the unit did
    Bytes answer;                               ///< what it sent
};

} // namespace VirtualUnit
