// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Flash.h"
#include "unit/Response.h"

#include <string>

namespace VirtualUnit {

/// How many bytes of a serial name the configuration page has room for.
constexpr std::size_t MaximumSerialNameLength = 32;

/// What tests can change about a unit before and during a run (Unit::adjust). A plain value.
struct Overrides
{
    milliseconds eraseTime{20};    ///< to erase one page
    milliseconds programTime{10};  ///< to program one block
    milliseconds leaveDelay{20};   ///< from the response to the disappearance
    milliseconds returnDelay{300}; ///< from there to the return
    bool returns = true;           ///< false: once it has left, the unit stays away

    // Application mode.
    std::uint32_t schemaVersion = 5; ///< 4: configuration page of 64 bytes, 5: of 74 bytes
    std::string serialName;          ///< what is too long is cut off

    // Bootloader mode.
    std::uint16_t transferSize = 2048;
    std::uint32_t pageSize = 2048;      ///< what one erase clears: a divisor of 242 KiB, not 0
    std::string layout = Flash::Layout; ///< the interface string, true or not
};

} // namespace VirtualUnit
