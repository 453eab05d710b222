// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

namespace VirtualUnit {

/// Makes sure that this program runs with umockdev's library preloaded: restarts the program with
/// it (then it does not return) unless it is there. Throws std::runtime_error when it cannot be
/// loaded; going on would let the command reach the machine's real bus.
void ensurePreload(char** arguments);

} // namespace VirtualUnit
