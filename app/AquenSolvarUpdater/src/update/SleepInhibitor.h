#pragma once

#include <QString>

#include <memory>

namespace AquenSolvar {

/// Keeps the system from going to sleep, and a closed lid from suspending it, while the object
/// lives. Best effort: a system that refuses, or that offers no such thing, is logged and is no
/// error. Making one may take up to 2 s when the system's service hangs, so not on the GUI thread.
/// To be destroyed on the thread that made it.
///
/// Linux: locks of the login manager, org.freedesktop.login1.Manager.Inhibit. Windows: the thread's
/// execution state.
class SleepInhibitor
{
public:
    /// @param reason what the system tells a person who asks why it stays awake
    explicit SleepInhibitor(const QString& reason);
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;
    ~SleepInhibitor();

private:
    class Locks;
    std::unique_ptr<Locks> m_locks;
};

} // namespace AquenSolvar
