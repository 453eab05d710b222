// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <chrono>

namespace AquenSolvar::Device {

/// How long a DFU device waits. The defaults are the program's figures; tests shorten them.
struct DfuTimes
{
    /// Fixed pause before each status read of a wait. The unit's own poll time-out is not used.
    std::chrono::milliseconds pollSleep{50};
    /// Time-out of a status read: some units do not respond while they erase.
    std::chrono::milliseconds statusTimeout{100000};
    /// Time after which a wait for a busy unit is logged; doubled after each warning.
    std::chrono::milliseconds busyWarning{10000};
    /// Time after which a busy unit is given up; 0 waits indefinitely.
    std::chrono::milliseconds busyLimit{0};
};

} // namespace AquenSolvar::Device
