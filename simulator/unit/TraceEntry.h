// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Descriptors.h"

namespace VirtualUnit {

/// One control request as a unit received it, and its response. A plain value.
struct TraceEntry
{
    Clock::time_point time;
    Mode mode = Mode::Application; ///< the unit's mode before the request
    std::string name;              ///< see requestName()
    SetupPacket setup;
    Bytes payload;                                  ///< what the host sent
    Response::Kind outcome = Response::Kind::Stall; ///< how the unit responded
    Bytes response;                                 ///< what it sent
};

} // namespace VirtualUnit
