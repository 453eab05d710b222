#pragma once

#include "unit/Answer.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace VirtualUnit {

/// Calls functions later, one after the other, on a thread of its own. Any thread may use it.
class Scheduler
{
public:
    Scheduler();
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    /// As stop().
    ~Scheduler();

    /// Calls @p task after @p delay; functions of the same moment keep their order. After stop()
    /// nothing is called any more.
    void after(milliseconds delay, std::function<void()> task);

    /// Forgets what is still to be called and waits for a function that runs. Not to be called from
    /// such a function.
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
