#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/// A request as it reached the server.
struct AnalyticsRequest
{
    QString way; ///< how the server treated it; empty when there was none
    QByteArray line;
    QMap<QByteArray, QByteArray> headers;
    QByteArray body;

    /// The messages of the batch: events by their names, others by their types.
    QStringList events() const;
};

/// A service for usage events on this machine, over HTTPS: the script analytics-server, named by
/// the environment variable ANALYTICS_SERVER. It has one port for each way of treating a request.
class AnalyticsServer
{
public:
    static constexpr int patience = 30'000; ///< ms

    /// Starts it and lets this process trust its authorities; false when it does not start.
    bool start();
    bool stop();

    /// HOST:PORT where requests are treated that way.
    QString host(const QString& way) const;

    /// The next that arrives; an empty one after @p wait ms.
    AnalyticsRequest next(int wait = patience);

private:
    bool awaitLine(int wait);

    QTemporaryDir m_directory;
    QProcess m_process;
    QJsonObject m_ports;
};
