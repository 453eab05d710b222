#include "Common/Logging/SLogSingleton.h"

#include "BuildFacts.h"
#include "Common/Logging/ComputerId.h"

#include <QUuid>

namespace Common {

namespace {

QString newSessionId()
{
    const QString braced = QUuid::createUuid().toString();
    return braced.mid(1, braced.size() - 2);
}

} // namespace

AnalyticsSurroundings::AnalyticsSurroundings()
    : host(QString::fromLatin1(BuildFacts::analyticsHost))
    , now(&QDateTime::currentDateTime)
{
}

SLogSingleton::SLogSingleton(const QString& writeKey, const AnalyticsSurroundings& surroundings,
                             const Analytics::Poster::FailureReport& report)
    : m_writeKey(writeKey)
    , m_surroundings(surroundings)
    , m_sender{computerId(), QString(), newSessionId()}
    , m_poster(
          new Analytics::Poster(std::make_unique<QNetworkAccessManager>(),
                                QUrl(QStringLiteral("https://%1/v1/batch").arg(surroundings.host)),
                                surroundings.answerWithin, report))
{
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(surroundings.flushInterval);
    connect(&m_flushTimer, &QTimer::timeout, this, &SLogSingleton::emitFlush);
    connect(this, &SLogSingleton::track, this, &SLogSingleton::reallyTrack, Qt::QueuedConnection);
    connect(this, &SLogSingleton::flush, this, &SLogSingleton::reallyFlush, Qt::QueuedConnection);

    enqueue(Analytics::identifyMessage(m_sender, computerId(), now()));
    const QString event = QStringLiteral("Mendrel Session Started");
    // It is queued, and so has its effect.
    emit track(event, Analytics::sessionProperties(), now()); // clazy:exclude=incorrect-emit
}

void SLogSingleton::emitTrack(const QString& event, const QVariantMap& properties,
                              const QString& timestamp)
{
    emit track(event, properties, timestamp);
}

void SLogSingleton::emitFlush()
{
    emit flush();
}

void SLogSingleton::reallyTrack(const QString& event, const QVariantMap& properties,
                                const QString& timestamp)
{
    enqueue(Analytics::trackMessage(m_sender, computerId(), timestamp, event, properties));
}

void SLogSingleton::reallyFlush()
{
    m_flushTimer.stop();
    if (!m_queue.isEmpty())
        m_poster->post(Analytics::batchBody(m_queue.messages(), now()),
                       Analytics::authorization(m_writeKey));
    m_queue.clear();
}

void SLogSingleton::enqueue(const QVariantMap& message)
{
    m_queue.append(message);
    if (m_queue.isOverfull())
        reallyFlush();
    else if (!m_flushTimer.isActive())
        m_flushTimer.start();
}

QString SLogSingleton::now() const
{
    return Analytics::timestampText(m_surroundings.now());
}

} // namespace Common
