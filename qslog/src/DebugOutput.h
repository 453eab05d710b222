#pragma once

#include <QString>

namespace QsLogging {

/// Sends a text, as it is, to the platform's unbuffered diagnostic channel: the debugger on
/// Windows, standard error elsewhere. Any thread.
void sendToDebugOutput(const QString& text);

/// Makes a channel that nobody reads any more swallow what it is sent. Without it, on systems with
/// SIGPIPE, a closed pipe behind standard error would end the process. Once, at the very start.
void surviveClosedDebugOutput();

} // namespace QsLogging
