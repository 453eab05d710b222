#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

namespace Common::Analytics {

/// Posts batches to the analytics service over HTTPS, each once, and never waits for an answer: a
/// batch that fails is reported and lost. Certificates are checked against the system's
/// authorities, and redirects are not followed. Lives on a thread with an event loop.
class Poster : public QObject
{
    Q_OBJECT

public:
    /// Takes note of a failed post: what failed, how, and the network's text for it.
    using FailureReport = std::function<void(const char* what, QNetworkReply::NetworkError error,
                                             const QString& text)>;

    /// Lets the posts that are under way come to their end, then deletes the poster.
    struct DeleteWhenIdle
    {
        void operator()(Poster* poster) const { poster->deleteWhenIdle(); }
    };
    using Owner = std::unique_ptr<Poster, DeleteWhenIdle>;

    /// @param answerWithin milliseconds after which a post that is still unanswered is given up as
    ///        failed, so that a silent server does not make them pile up
    Poster(std::unique_ptr<QNetworkAccessManager> manager, const QUrl& endpoint, int answerWithin,
           FailureReport report);

    /// Sends a body with the given value of the header Authorization; returns at once.
    void post(const QByteArray& body, const QByteArray& authorization);

private:
    void on_QNetworkAccessManager_finished(QNetworkReply* reply);
    void deleteWhenIdle();

    std::unique_ptr<QNetworkAccessManager> m_manager;
    QUrl m_endpoint;
    int m_answerWithin;
    FailureReport m_report;
    int m_underWay = 0;
    bool m_isOrphan = false;
};

} // namespace Common::Analytics
