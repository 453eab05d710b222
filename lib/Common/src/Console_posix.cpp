// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Console.h"

#include <atomic>
#include <csignal>
#include <initializer_list>
#include <unistd.h>

namespace Common {

namespace {

// A signal handler has no other way to its data.
std::atomic<int>& interrupts()
{
    static_assert(std::atomic<int>::is_always_lock_free, "used in a signal handler");
    static std::atomic<int> count{0};
    return count;
}

void countInterrupt(int)
{
    if (++interrupts() > 1)
        _exit(128 + SIGINT);
}

} // namespace

bool isOutputTerminal()
{
    return isatty(STDOUT_FILENO) == 1;
}

void watchForInterrupt()
{
    for (const int number : {SIGINT, SIGTERM}) {
        // A shell lets its background jobs ignore Ctrl+C.
        if (std::signal(number, &countInterrupt) == SIG_IGN)
            std::signal(number, SIG_IGN);
    }
}

bool isInterrupted()
{
    return interrupts() > 0;
}

} // namespace Common
