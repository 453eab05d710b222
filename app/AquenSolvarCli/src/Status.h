// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

namespace AquenSolvar::Cli {

/// Exit statuses of the program.
enum class Status
{
    Done = 0, ///< also if there was nothing to do
    UpdateFailed = 1,
    BadUsage = 2,
    NoSuchUnit = 3,
    NoFirmware = 4, ///< nothing was sent to the unit
    NoAccess = 5,   ///< no permission, no driver, or in use
    Ambiguous = 6,  ///< several units match
    Interrupted = 130
};

} // namespace AquenSolvar::Cli
