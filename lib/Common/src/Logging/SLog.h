#pragma once

#include "Common/Logging/SLogSingleton.h"

#include <QObject>

namespace Common {

/// Usage analytics for QML (singleton SLog) and for native code: starts and stops the one session
/// of the process, and records events in it. Nothing is sent and no network is touched before
/// startLogging(). Has no state of its own: all objects of the class steer the same session. Any
/// thread.
class SLog : public QObject
{
    Q_OBJECT

public:
    explicit SLog(QObject* parent = nullptr);

    /// For tests: a service, a time and delays of their own for the session that it starts.
    explicit SLog(AnalyticsSurroundings surroundings, QObject* parent = nullptr);

    /// Starts the session. The calling thread's event loop must run until it was stopped: it does
    /// the work. While one runs, that is logged as an error and nothing changes.
    /// @param writeKey the service's key, which names where events go
    Q_INVOKABLE void startLogging(const QString& writeKey);

    /// Sends what waits, then ends the session, on the thread that started it. Does nothing while
    /// none runs.
    Q_INVOKABLE void stopLogging();

    /// Records an event with the present time. Does nothing while no session runs.
    Q_INVOKABLE void track(const QString& event, const QVariantMap& properties = QVariantMap());

private:
    AnalyticsSurroundings m_surroundings;
};

} // namespace Common
