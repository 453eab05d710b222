#include "qslog/DebugOutputDestination.h"

#include "qslog/AnsiColours.h"
#include "qslog/DebugOutput.h"

namespace QsLogging {

void DebugOutputDestination::write(const QString& message, Level)
{
    sendToDebugOutput(colours() ? message : withoutColours(message));
    sendToDebugOutput(QStringLiteral("\n"));
}

std::shared_ptr<DebugOutputDestination> debugOutputDestination()
{
    return std::make_shared<DebugOutputDestination>();
}

} // namespace QsLogging
