// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/Destination.h"

namespace QsLogging {

/// Writes lines to the platform's unbuffered diagnostic channel: the debugger on Windows, standard
/// error elsewhere. Keeps colours only when colours() is set. Takes no lock; the channel serialises
/// by itself. Any thread.
class DebugOutputDestination : public Destination
{
public:
    void write(const QString& message, Level level) override;
    bool isValid() override { return true; }
};

/// A new destination with colours off. The caller keeps it and shares it.
std::shared_ptr<DebugOutputDestination> debugOutputDestination();

/// Makes a channel without a reader discard what is written to it. Without this call, on systems
/// with SIGPIPE, a closed pipe behind standard error ends the process, and standard streams that
/// are closed at its start lead into files that it opens. Call once, first in main().
void surviveClosedDebugOutput();

} // namespace QsLogging
