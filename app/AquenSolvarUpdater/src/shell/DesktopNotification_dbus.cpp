// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/Log.h"
#include "shell/DesktopNotification.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QGuiApplication>

namespace AquenSolvar {

void DesktopNotification::show(const QString& text)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QLOG_INFO() << "No desktop to notify:" << bus.lastError().message();
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    const QString desktopEntry = QGuiApplication::desktopFileName();
    // The text is the summary, which is plain; servers read mark-up in the body.
    call << QStringLiteral("Aquen/Solvar Updater") << 0U << desktopEntry << text << QString()
         << QStringList() << QVariantMap{{QStringLiteral("desktop-entry"), desktopEntry}}
         << -1; // shown for as long as the desktop likes
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher] {
        if (watcher->isError())
            QLOG_INFO() << "The desktop showed no notification:" << watcher->error().message();
        watcher->deleteLater();
    });
}

} // namespace AquenSolvar
