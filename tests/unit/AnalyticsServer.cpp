#include "AnalyticsServer.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTest>

namespace {

AnalyticsRequest parse(const QByteArray& line)
{
    const QJsonDocument record = QJsonDocument::fromJson(line);
    AnalyticsRequest request;
    request.way = record["way"].toString();
    const QByteArray raw = QByteArray::fromBase64(record["request"].toString().toLatin1());
    const int end = raw.indexOf("\r\n\r\n");
    request.body = raw.mid(end + 4);
    QList<QByteArray> head = raw.left(end).replace("\r\n", "\n").split('\n');
    request.line = head.takeFirst();
    for (const QByteArray& header : head) {
        const int colon = header.indexOf(": ");
        request.headers.insert(header.left(colon), header.mid(colon + 2));
    }
    return request;
}

} // namespace

QStringList AnalyticsRequest::events() const
{
    QStringList names;
    const QJsonDocument document = QJsonDocument::fromJson(QString::fromLatin1(body).toUtf8());
    for (const QJsonValue& message : document["batch"].toArray())
        names << message["event"].toString(message["type"].toString());
    return names;
}

bool AnalyticsServer::start()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(qEnvironmentVariable("ANALYTICS_SERVER"), {m_directory.path()});
    if (!awaitLine(patience))
        return false;
    m_ports = QJsonDocument::fromJson(m_process.readLine()).object();
    QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
    trust.setCaCertificates(QSslCertificate::fromPath(m_directory.filePath("authorities.pem")));
    QSslConfiguration::setDefaultConfiguration(trust);
    return trust.caCertificates().size() == 2;
}

bool AnalyticsServer::stop()
{
    m_process.closeWriteChannel();
    return m_process.waitForFinished();
}

QString AnalyticsServer::host(const QString& way) const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_ports[way].toInt());
}

AnalyticsRequest AnalyticsServer::next(int wait)
{
    return awaitLine(wait) ? parse(m_process.readLine()) : AnalyticsRequest();
}

bool AnalyticsServer::awaitLine(int wait)
{
    QElapsedTimer waiting;
    waiting.start();
    while (!m_process.canReadLine() && !waiting.hasExpired(wait))
        QTest::qWait(5);
    return m_process.canReadLine();
}
