// SPDX-License-Identifier: LicenseRef-Proprietary
#include "support/DebugOutput.h"

#include <windows.h>

static QString captured;

// OutputDebugStringW() raises an exception for debuggers, with the text in the local encoding.
static LONG CALLBACK capture(EXCEPTION_POINTERS* pointers)
{
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != DBG_PRINTEXCEPTION_C)
        return EXCEPTION_CONTINUE_SEARCH;
    captured += QString::fromLocal8Bit(reinterpret_cast<char*>(record.ExceptionInformation[1]));
    return EXCEPTION_CONTINUE_EXECUTION;
}

QString debugOutputOf(const std::function<void()>& action)
{
    captured.clear();
    void* const handler = AddVectoredExceptionHandler(TRUE, &capture);
    action();
    RemoveVectoredExceptionHandler(handler);
    return captured;
}
