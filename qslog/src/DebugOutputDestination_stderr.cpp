// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/DebugOutputDestination.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

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
    // The next file or socket gets the lowest free descriptor. A directory can neither be read nor
    // written, like a closed stream.
    int lowest = ::open("/", O_RDONLY);
    while (lowest >= 0 && lowest <= STDERR_FILENO)
        lowest = ::open("/", O_RDONLY);
    if (lowest > STDERR_FILENO)
        ::close(lowest);
}

} // namespace QsLogging
