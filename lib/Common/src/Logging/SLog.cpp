#include "Common/Logging/SLog.h"

#include "qslog/Log.h"

#include <mutex>
#include <utility>

namespace Common {

namespace {

// The one session of the process; deleted by its own thread.
std::mutex sessionMutex;
SLogSingleton* session = nullptr;

void logFailure(const char* what, QNetworkReply::NetworkError error, const QString& text)
{
    QLOG_ERROR() << what << error;
    QLOG_ERROR() << text;
}

} // namespace

SLog::SLog(QObject* parent)
    : SLog(AnalyticsSurroundings(), parent)
{
}

SLog::SLog(AnalyticsSurroundings surroundings, QObject* parent)
    : QObject(parent)
    , m_surroundings(std::move(surroundings))
{
}

void SLog::startLogging(const QString& writeKey)
{
    const std::lock_guard lock(sessionMutex);
    if (session != nullptr) {
        QLOG_ERROR() << "Initialized Segment logging multiple times; doing nothing in startLogging";
        return;
    }
    session = new SLogSingleton(writeKey, m_surroundings, logFailure);
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
        emit session->track(event, properties, Analytics::timestampText(m_surroundings.now()));
}

} // namespace Common
