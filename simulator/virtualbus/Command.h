// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QStringList>

namespace VirtualUnit {

/// Blocks the signals that runCommand() passes on, for this thread and those that it starts later.
void blockSignals();

/// Runs a command on this program's standard streams and serves this thread's events until it ends.
/// Passes on the signals that ask this program to end. The command is killed if this program dies.
/// Returns the exit status as a shell does: 128 + the signal's number for a command that was
/// killed. Throws std::runtime_error when it cannot be started.
int runCommand(const QStringList& command);

} // namespace VirtualUnit
