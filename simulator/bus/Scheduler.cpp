// SPDX-License-Identifier: LicenseRef-Proprietary
#include "bus/Scheduler.h"

namespace VirtualUnit {

Scheduler::Scheduler()
    : m_thread([this] { run(); })
{
}

Scheduler::~Scheduler()
{
    stop();
}

void Scheduler::after(milliseconds delay, std::function<void()> task)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_stopped)
        return;
    m_tasks.emplace(Clock::now() + delay, std::move(task));
    m_wake.notify_one();
}

void Scheduler::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopped = true;
        m_tasks.clear();
        m_wake.notify_one();
    }
    if (m_thread.joinable())
        m_thread.join();
}

void Scheduler::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_stopped) {
        if (m_tasks.empty()) {
            m_wake.wait(lock);
        } else if (const auto due = m_tasks.begin()->first; Clock::now() < due) {
            m_wake.wait_until(lock, due);
        } else {
            const std::function<void()> task = std::move(m_tasks.begin()->second);
            m_tasks.erase(m_tasks.begin());
            lock.unlock();
            task();
            lock.lock();
        }
    }
}

} // namespace VirtualUnit
