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
BOOL WINAPI countInterrupt(DWORD)
{
    if (++interrupts() > 1)
        ExitProcess(128 + SIGINT);
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
