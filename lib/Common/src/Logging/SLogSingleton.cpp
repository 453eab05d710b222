// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/SLogSingleton.h"

#include "BuildFacts.h"
#include "qslog/Log.h"

#include <QSettings>
#include <QUuid>

namespace Common {

namespace {

constexpr qint32 largestQueue = 200'000; // bytes

QString withoutBraces(QString id)
{
    return id.remove(QLatin1Char('{')).remove(QLatin1Char('}'));
}

// A random name for this computer and account, created by the first call and kept in the settings
// store. If the store cannot be written, each call creates another.
QString computerId()
{
    const QString key = QStringLiteral("SLog/ComputerId");
    QSettings settings;
    if (!settings.contains(key)) {
        settings.setValue(key, QUuid::createUuid().toString());
        settings.sync();
        if (settings.status() != QSettings::NoError)
            QLOG_WARN() << "Could not store the computer id in" << settings.fileName();
    }
    return withoutBraces(settings.value(key).toString());
}

} // namespace

AnalyticsSettings::AnalyticsSettings()
    : endpoint(
          QStringLiteral("https://%1/v1/batch").arg(QString::fromLatin1(BuildFacts::analyticsHost)))
    , now(&QDateTime::currentDateTime)
{
}

SLogSingleton::SLogSingleton(const QString& writeKey, const AnalyticsSettings& settings,
                             const Analytics::Poster::FailureReport& report)
    : m_writeKey(writeKey)
    , m_settings(settings)
    , m_sender{computerId(), QString(), withoutBraces(QUuid::createUuid().toString())}
    , m_poster(new Analytics::Poster(std::make_unique<QNetworkAccessManager>(), settings.endpoint,
                                     settings.responseTimeout, report))
{
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(settings.flushInterval);
    connect(&m_flushTimer, &QTimer::timeout, this, &SLogSingleton::emitFlush);
    connect(this, &SLogSingleton::track, this, &SLogSingleton::reallyTrack, Qt::QueuedConnection);
    connect(this, &SLogSingleton::flush, this, &SLogSingleton::reallyFlush, Qt::QueuedConnection);

    enqueue(Analytics::identifyMessage(m_sender, computerId(), now()));
    const QString event = QStringLiteral("Mendrel Session Started");
    // The connection is queued: the slot runs after the constructor.
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
        m_poster->post(Analytics::batchBody(m_queue, now()), Analytics::authorization(m_writeKey));
    m_queue.clear();
    m_queuedBytes = 0;
}

void SLogSingleton::enqueue(const QVariantMap& message)
{
    m_queue.append(message);
    m_queuedBytes += Analytics::sizeOf(message);
    if (m_queuedBytes > largestQueue)
        reallyFlush();
    else if (!m_flushTimer.isActive())
        m_flushTimer.start();
}

QString SLogSingleton::now() const
{
    return Analytics::timestampText(m_settings.now());
}

} // namespace Common
