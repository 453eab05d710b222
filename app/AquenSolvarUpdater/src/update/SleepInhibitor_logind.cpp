// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/Log.h"
#include "update/SleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <vector>

namespace AquenSolvar {

// A lock is held until its descriptor is closed. The pending call keeps the descriptor that the
// response brings.
class SleepInhibitor::Locks
{
public:
    void request(const QDBusConnection& bus, const QString& what, const QString& reason)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
        call << what << QStringLiteral("Aquen/Solvar Updater") << reason << QStringLiteral("block");
        const auto& watcher =
            m_requests.emplace_back(std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(call)));
        QObject::connect(watcher.get(), &QDBusPendingCallWatcher::finished, watcher.get(),
                         [what](const QDBusPendingCallWatcher* finished) {
                             if (finished->isError())
                                 QLOG_INFO() << "The system does not block" << what << ":"
                                             << finished->error().message();
                             else
                                 QLOG_INFO() << "The system was asked to block" << what;
                         });
    }

private:
    std::vector<std::unique_ptr<QDBusPendingCallWatcher>> m_requests;
};

SleepInhibitor::SleepInhibitor(const QString& reason)
    : m_locks(std::make_unique<Locks>())
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        QLOG_INFO() << "No login manager to ask for staying awake:" << bus.lastError().message();
        return;
    }
    // Two requests: the second may be refused where the first is granted.
    m_locks->request(bus, QStringLiteral("sleep:idle"), reason);
    m_locks->request(bus, QStringLiteral("handle-lid-switch"), reason);
}

SleepInhibitor::~SleepInhibitor() = default;

} // namespace AquenSolvar
