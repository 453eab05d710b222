// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

namespace Common::Analytics {

/// Posts batches to the analytics service, each once, without blocking. A failed batch is reported
/// and lost. Certificates are checked against the system's authorities; redirects are not followed.
/// Lives on a thread with an event loop.
class Poster : public QObject
{
    Q_OBJECT

public:
    /// Called for a failed post with what failed, the error and the network's text for it.
    using FailureReport = std::function<void(const char* what, QNetworkReply::NetworkError error,
                                             const QString& text)>;

    /// Lets pending posts finish, then deletes the poster.
    struct DeleteWhenIdle
    {
        void operator()(Poster* poster) const { poster->deleteWhenIdle(); }
    };
    using Owner = std::unique_ptr<Poster, DeleteWhenIdle>;

    /// @param responseTimeout milliseconds after which a post without a response is aborted;
    ///        otherwise posts to a silent server would accumulate
    Poster(std::unique_ptr<QNetworkAccessManager> manager, const QUrl& endpoint,
           int responseTimeout, FailureReport report);

    /// Sends a body with the given value of the header Authorization; returns at once.
    void post(const QByteArray& body, const QByteArray& authorization);

private:
    void on_QNetworkAccessManager_finished(QNetworkReply* reply);
    void deleteWhenIdle();

    std::unique_ptr<QNetworkAccessManager> m_manager;
    QUrl m_endpoint;
    int m_responseTimeout;
    FailureReport m_report;
    int m_pending = 0;
    bool m_isOrphan = false;
};

} // namespace Common::Analytics
