#include "qslog/DebugOutput.h"

#include <csignal>
#include <cstdio>

namespace QsLogging {

void sendToDebugOutput(const QString& text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
}

void surviveClosedDebugOutput()
{
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace QsLogging
