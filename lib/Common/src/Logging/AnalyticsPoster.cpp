// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/AnalyticsPoster.h"

#include <QCoreApplication>
#include <QIODevice>
#include <QNetworkRequest>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace Common::Analytics {

namespace {

// When a connection breaks before the response, the network manager repeats the request unless its
// body cannot be rewound. The service may have accepted it already.
class OneTimeBody : public QIODevice
{
public:
    explicit OneTimeBody(const QByteArray& body)
        : m_body(body)
    {
        open(ReadOnly | Unbuffered);
    }
    bool reset() override { return false; }
    qint64 size() const override { return m_body.size(); }

protected:
    qint64 readData(char* data, qint64 maximum) override
    {
        const qint64 count = qMin(maximum, size() - m_taken);
        std::copy_n(m_body.constData() + m_taken, count, data);
        m_taken += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_body;
    qint64 m_taken = 0;
};

} // namespace

Poster::Poster(std::unique_ptr<QNetworkAccessManager> manager, const QUrl& endpoint,
               int responseTimeout, FailureReport report)
    : m_manager(std::move(manager))
    , m_endpoint(endpoint)
    , m_responseTimeout(responseTimeout)
    , m_report(std::move(report))
{
    connect(m_manager.get(), &QNetworkAccessManager::finished, this,
            &Poster::on_QNetworkAccessManager_finished);
}

void Poster::post(const QByteArray& body, const QByteArray& authorization)
{
    QNetworkRequest request(m_endpoint);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    request.setRawHeader("Authorization", authorization);
    auto data = std::make_unique<OneTimeBody>(body);
    QNetworkReply* reply = m_manager->post(request, data.get());
    data.release()->setParent(reply);
    ++m_pending;
    if (reply->error() != QNetworkReply::NoError)
        m_report("Error POSTing batched logging request:", reply->error(), reply->errorString());
    QTimer::singleShot(m_responseTimeout, reply, &QNetworkReply::abort);
}

void Poster::on_QNetworkAccessManager_finished(QNetworkReply* reply)
{
    if (reply->error() != QNetworkReply::NoError)
        m_report("Error in network reply in SLog:", reply->error(), reply->errorString());
    reply->deleteLater();
    --m_pending;
    if (m_isOrphan && m_pending == 0)
        deleteLater();
}

void Poster::deleteWhenIdle()
{
    m_isOrphan = true;
    if (m_pending == 0) {
        deleteLater();
        return;
    }
    // The network needs an event loop: pending posts end with it.
    connect(thread(), &QThread::finished, this, &QObject::deleteLater);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            &QObject::deleteLater);
}

} // namespace Common::Analytics
