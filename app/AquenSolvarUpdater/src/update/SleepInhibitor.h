// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QString>

#include <memory>

namespace AquenSolvar {

/// Keeps the system from sleeping, and a closed lid from suspending it, while the object lives.
/// Best effort: a system that refuses or offers no such service is logged and is not an error. The
/// constructor may block for 2 s if the service hangs, so it is not for the GUI thread. Destroyed
/// on the thread that created it.
///
/// Linux: locks of the login manager, org.freedesktop.login1.Manager.Inhibit. Windows: the thread's
/// execution state.
class SleepInhibitor
{
public:
    /// @param reason shown by the system as the reason for staying awake
    explicit SleepInhibitor(const QString& reason);
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;
    ~SleepInhibitor();

private:
    class Locks;
    std::unique_ptr<Locks> m_locks;
};

} // namespace AquenSolvar
