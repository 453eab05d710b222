#pragma once

#include "Common/Logging/AnalyticsMessage.h"
#include "Common/Logging/AnalyticsPoster.h"
#include "Common/Logging/AnalyticsQueue.h"

#include <QObject>
#include <QTimer>

namespace Common {

/// What the analytics client takes from outside.
struct AnalyticsSurroundings
{
    AnalyticsSurroundings();

    QString host;                   ///< of the service, a port may follow; set when built
    std::function<QDateTime()> now; ///< local time
    int flushInterval = 10'000;     ///< ms from the first waiting message to the post
    int answerWithin = 60'000;      ///< ms until a post without an answer is given up
};

/// One session of the analytics client: queues messages and posts them in batches, at most one in
/// ten seconds unless much waits. Starts with an identify message and the event "Mendrel Session
/// Started". Messages are built and sent on the thread that made the object, whose event loop must
/// run. Waiting messages are dropped with the object; posts under way still come to their end.
class SLogSingleton : public QObject
{
    Q_OBJECT

public:
    /// @param writeKey the service's key, which names where events go
    SLogSingleton(const QString& writeKey, const AnalyticsSurroundings& surroundings,
                  const Analytics::Poster::FailureReport& report);

signals:
    /// Asks for an event to be queued. May be emitted from any thread.
    /// @param timestamp as Analytics::timestampText() makes it
    void track(const QString& event, const QVariantMap& properties, const QString& timestamp);

    /// Asks for a post of what waits. May be emitted from any thread.
    void flush();

public slots:
    /// The signals as slots; any thread.
    void emitTrack(const QString& event, const QVariantMap& properties, const QString& timestamp);
    void emitFlush();

    /// The work itself; the object's own thread.
    void reallyTrack(const QString& event, const QVariantMap& properties, const QString& timestamp);
    void reallyFlush();

private:
    void enqueue(const QVariantMap& message);
    QString now() const;

    QString m_writeKey;
    AnalyticsSurroundings m_surroundings;
    Analytics::Sender m_sender;
    Analytics::Poster::Owner m_poster;
    QTimer m_flushTimer;
    Analytics::Queue m_queue;
};

} // namespace Common
