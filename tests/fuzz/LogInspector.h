#pragma once

namespace Fuzz {

/// From the first call on each line that goes into the log is looked at: what a unit or a file says
/// must not be able to write lines of its own there, nor escapes that a terminal would obey. At all
/// levels, so that this also formats every line.
void inspectLog();

} // namespace Fuzz
