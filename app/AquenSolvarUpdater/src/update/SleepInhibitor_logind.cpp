// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/Log.h"
#include "update/SleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>

#include <vector>

namespace AquenSolvar {

namespace {

constexpr int responseTimeoutMs = 1000;

// A lock is held until its descriptor is closed.
QDBusReply<QDBusUnixFileDescriptor> inhibit(const QDBusConnection& bus, const QString& what,
                                            const QString& reason)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call << what << QStringLiteral("Aquen/Solvar Updater") << reason << QStringLiteral("block");
    return bus.call(call, QDBus::Block, responseTimeoutMs);
}

} // namespace

class SleepInhibitor::Locks
{
public:
    void take(const QDBusConnection& bus, const QString& what, const QString& reason)
    {
        const QDBusReply<QDBusUnixFileDescriptor> reply = inhibit(bus, what, reason);
        if (reply.isValid()) {
            QLOG_INFO() << "The system was asked to block" << what;
            m_held.push_back(reply.value());
        } else {
            QLOG_INFO() << "The system does not block" << what << ":" << reply.error().message();
        }
    }

private:
    std::vector<QDBusUnixFileDescriptor> m_held;
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
    m_locks->take(bus, QStringLiteral("sleep:idle"), reason);
    m_locks->take(bus, QStringLiteral("handle-lid-switch"), reason);
}

SleepInhibitor::~SleepInhibitor() = default;

} // namespace AquenSolvar
