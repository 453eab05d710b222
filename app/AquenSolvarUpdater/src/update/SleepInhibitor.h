// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QString>

#include <memory>

namespace AquenSolvar {

/// Keeps the system from sleeping, and a closed lid from suspending it, while the object lives.
/// Best effort: a system that refuses or offers no such service is logged and is not an error. Does
/// not wait for the service. Destroyed on the thread that created it, which logs the response while
/// it handles events.
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
