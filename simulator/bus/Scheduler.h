// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Response.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace VirtualUnit {

/// Runs tasks later, one after the other, on its own thread. Any thread may use it.
class Scheduler
{
public:
    Scheduler();
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    ~Scheduler(); ///< as stop()

    /// Calls @p task after @p delay; tasks of the same moment keep their order. Does nothing after
    /// stop().
    void after(milliseconds delay, std::function<void()> task);

    /// Drops pending tasks and waits for one that runs. Not to be called from a task.
    void stop();

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::multimap<Clock::time_point, std::function<void()>> m_tasks;
    bool m_stopped = false;
    std::thread m_thread;
};

} // namespace VirtualUnit
