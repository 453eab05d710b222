#include "qslog/DebugOutput.h"

#include <windows.h>

namespace QsLogging {

void sendToDebugOutput(const QString& text)
{
    OutputDebugStringW(reinterpret_cast<const wchar_t*>(text.utf16()));
}

void surviveClosedDebugOutput() {}

} // namespace QsLogging
