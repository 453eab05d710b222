// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

namespace Common {

/// Whether standard output is a terminal, on which a line can be drawn again and again.
bool isOutputTerminal();

/// From now on the first Ctrl+C (also SIGTERM, or the end of the console, after which Windows
/// leaves the process five seconds) only makes isInterrupted() true, and a second one ends the
/// process at once with status 130, even while the main thread blocks. A signal that the program
/// was started to ignore stays ignored.
void watchForInterrupt();

/// Any thread.
bool isInterrupted();

} // namespace Common
