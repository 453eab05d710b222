// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/SLog.h"

#include "qslog/Log.h"

#include <mutex>
#include <utility>

namespace Common {

namespace {

// The only session of the process. Its own thread deletes it.
std::mutex sessionMutex;
SLogSingleton* session = nullptr;

void logFailure(const char* what, QNetworkReply::NetworkError error, const QString& text)
{
    QLOG_ERROR() << what << error;
    QLOG_ERROR() << text;
}

} // namespace

SLog::SLog(QObject* parent)
    : SLog(AnalyticsSettings(), parent)
{
}

SLog::SLog(AnalyticsSettings settings, QObject* parent)
    : QObject(parent)
    , m_settings(std::move(settings))
{
}

void SLog::startLogging(const QString& writeKey)
{
    const std::lock_guard lock(sessionMutex);
    if (session != nullptr) {
        QLOG_ERROR() << "Initialized Segment logging multiple times; doing nothing in startLogging";
        return;
    }
    session = new SLogSingleton(writeKey, m_settings, logFailure);
}

void SLog::stopLogging()
{
    const std::lock_guard lock(sessionMutex);
    if (session == nullptr)
        return;
    emit session->flush();
    session->deleteLater();
    session = nullptr;
}

void SLog::track(const QString& event, const QVariantMap& properties)
{
    const std::lock_guard lock(sessionMutex);
    if (session != nullptr)
        emit session->track(event, properties, Analytics::timestampText(m_settings.now()));
}

} // namespace Common
