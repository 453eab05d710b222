#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace VirtualUnit {

/// How many clients have a node of the bus open, those of units that are gone included. Any thread
/// may use it.
class ClientCount
{
public:
    void change(int by)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_count += by;
        m_changed.notify_all();
    }

    /// Waits until there is none and tells whether that came in time.
    bool waitForNone(std::chrono::milliseconds timeout)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, timeout, [this] { return m_count == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};

} // namespace VirtualUnit
