#pragma once

#include <functional>
#include <string>
#include <vector>

namespace VirtualUnit {

/// Runs one command and waits for it, passing on the signals that ask this program to end. Those
/// signals have to be blocked in every thread: call blockSignals() before any is started.
class ChildProcess
{
public:
    static void blockSignals();

    /// @p arguments begins with the program. Throws std::runtime_error when it cannot be started.
    explicit ChildProcess(const std::vector<std::string>& arguments);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Waits for the end. While @p descriptor (-1: none) is readable, @p onReadable is called.
    /// Gives the exit status as a shell does: 128 and the signal's number for one that was killed.
    int wait(int descriptor, const std::function<void()>& onReadable);

private:
    bool handleSignals(int& status) const;

    int m_signals = -1;
    int m_process = -1;
};

} // namespace VirtualUnit
