// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <optional>

namespace AquenSolvar {

/// Handles the program's own options and refuses unknown arguments, with an error and the help text
/// on standard error. Needs no display. Call it before the application object exists.
/// @return the exit status: 0 after an option, 2 on wrong usage; empty if the program is to run
std::optional<int> handleCommandLine(int argc, char** argv);

/// Refuses what the application object has left of its arguments: options that Qt knows, in a form
/// that it does not take or for another platform. Reports them as handleCommandLine() does.
/// @return the exit status 2, or empty if nothing is left
std::optional<int> refuseRemainingArguments();

} // namespace AquenSolvar
