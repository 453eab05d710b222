// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/DebugOutputDestination.h"

#include <windows.h>

namespace QsLogging {

void DebugOutputDestination::write(const QString& message, Level)
{
    const QString text = colours() ? message : withoutColours(message);
    OutputDebugStringW(reinterpret_cast<const wchar_t*>(text.utf16()));
    OutputDebugStringW(L"\n");
}

std::shared_ptr<DebugOutputDestination> debugOutputDestination()
{
    return std::make_shared<DebugOutputDestination>();
}

void surviveClosedDebugOutput() {}

} // namespace QsLogging
