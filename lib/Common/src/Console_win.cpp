// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Console.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <io.h>
#include <windows.h>

namespace Common {

namespace {

// The system passes its handler no context.
std::atomic<int>& interrupts()
{
    static std::atomic<int> count{0};
    return count;
}

// On a thread of the system's.
BOOL WINAPI countInterrupt(DWORD event)
{
    if (++interrupts() > 1)
        ExitProcess(128 + SIGINT);
    // When the console is closed, the system ends the process as soon as this returns, or after
    // five seconds: until then the main thread can end it in good order.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        Sleep(INFINITE);
    return TRUE;
}

} // namespace

bool isOutputTerminal()
{
    return _isatty(_fileno(stdout)) != 0;
}

void watchForInterrupt()
{
    SetConsoleCtrlHandler(&countInterrupt, TRUE);
}

bool isInterrupted()
{
    return interrupts() > 0;
}

} // namespace Common
