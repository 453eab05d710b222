#pragma once

namespace VirtualUnit {

/// Sees to it that this program runs with umockdev's library preloaded: starts the program anew
/// with it (then it does not return), or returns because it is there. Throws std::runtime_error
/// when it cannot be had; going on would let the command loose on the machine's real bus.
void ensurePreload(char** arguments);

} // namespace VirtualUnit
