// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "Common/Logging/AnalyticsMessage.h"
#include "Common/Logging/AnalyticsPoster.h"

#include <QObject>
#include <QTimer>

namespace Common {

/// What a session of the analytics client takes from outside.
struct AnalyticsSettings
{
    AnalyticsSettings();

    QUrl endpoint;                  ///< where batches go; the build sets the host
    std::function<QDateTime()> now; ///< local time
    int flushInterval = 10'000;     ///< ms from the first queued message to its post
    int responseTimeout = 60'000;   ///< ms until a post without a response counts as failed
};

/// One session of the analytics client. Queues messages and posts them in batches: one per flush
/// interval at most, or at once when more than 200,000 bytes are queued. Starts with an identify
/// message and the event "Mendrel Session Started". Builds and sends messages on the thread that
/// created the object, which needs an event loop. The destructor drops queued messages; pending
/// posts still finish.
class SLogSingleton : public QObject
{
    Q_OBJECT

public:
    /// @param writeKey the service's key, which names the receiver of the events
    SLogSingleton(const QString& writeKey, const AnalyticsSettings& settings,
                  const Analytics::Poster::FailureReport& report);

signals:
    /// Requests that an event is queued. May be emitted on any thread.
    /// @param timestamp as Analytics::timestampText() returns it
    void track(const QString& event, const QVariantMap& properties, const QString& timestamp);

    /// Requests a post of what is queued. May be emitted on any thread.
    void flush();

public slots:
    /// The signals as slots. Any thread.
    void emitTrack(const QString& event, const QVariantMap& properties, const QString& timestamp);
    void emitFlush();

    /// The work itself. The object's own thread.
    void reallyTrack(const QString& event, const QVariantMap& properties, const QString& timestamp);
    void reallyFlush();

private:
    void enqueue(const QVariantMap& message);
    QString now() const;

    QString m_writeKey;
    AnalyticsSettings m_settings;
    Analytics::Sender m_sender;
    Analytics::Poster::Owner m_poster;
    QTimer m_flushTimer;
    QVariantList m_queue;
    qint32 m_queuedBytes = 0; // compact JSON of all queued messages
};

} // namespace Common
