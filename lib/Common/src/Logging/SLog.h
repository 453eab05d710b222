// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "Common/Logging/SLogSingleton.h"

#include <QObject>

namespace Common {

/// Usage analytics for QML (singleton SLog) and for native code: starts and stops the only session
/// of the process and records events in it. Sends nothing and touches no network before
/// startLogging(). Stateless: all objects of the class share one session. Any thread.
class SLog : public QObject
{
    Q_OBJECT

public:
    explicit SLog(QObject* parent = nullptr);

    /// For tests: sessions started through this object use these settings.
    explicit SLog(AnalyticsSettings settings, QObject* parent = nullptr);

    /// Starts the session. The calling thread needs an event loop until the session has ended. If a
    /// session exists, logs an error and changes nothing.
    /// @param writeKey the service's key, which names the receiver of the events
    Q_INVOKABLE void startLogging(const QString& writeKey);

    /// Sends what is queued, then ends the session, both on the thread that started it. Without a
    /// session, does nothing.
    Q_INVOKABLE void stopLogging();

    /// Records an event with the present time. Without a session, does nothing.
    Q_INVOKABLE void track(const QString& event, const QVariantMap& properties = QVariantMap());

private:
    AnalyticsSettings m_settings;
};

} // namespace Common
