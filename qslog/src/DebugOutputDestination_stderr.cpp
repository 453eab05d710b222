// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/DebugOutputDestination.h"

#include <csignal>
#include <cstdio>

namespace QsLogging {

void DebugOutputDestination::write(const QString& message, Level)
{
    const QString text = colours() ? message : withoutColours(message);
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
    std::fputc('\n', stderr);
}

std::shared_ptr<DebugOutputDestination> debugOutputDestination()
{
    return std::make_shared<DebugOutputDestination>();
}

void surviveClosedDebugOutput()
{
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace QsLogging
