#pragma once

#include <QString>

namespace QsLogging {

/// Sends a text, as it is, to the platform's unbuffered diagnostic channel: the debugger on
/// Windows, standard error elsewhere. Any thread.
void sendToDebugOutput(const QString& text);

} // namespace QsLogging
