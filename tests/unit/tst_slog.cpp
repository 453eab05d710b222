// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/SLog.h"
#include "support/LogCapture.h"

#include <QSslConfiguration>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <thread>

using Common::AnalyticsSettings;
using Common::SLog;

static constexpr int patience = 30'000;

// Keeps each request, head and body, and sends the same response to all; an empty one disconnects.
class Server : public QTcpServer
{
public:
    QByteArray response = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n";
    QStringList requests;

    explicit Server(QObject* parent)
        : QTcpServer(parent)
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                if (!socket->peek(socket->bytesAvailable()).endsWith("T14:05:06\"}"))
                    return;
                requests << QString::fromLatin1(socket->readAll());
                socket->write(response);
                if (response.isEmpty())
                    socket->close();
            });
        });
        listen(QHostAddress::LocalHost);
    }
};

class SLogTest : public QObject
{
    Q_OBJECT

    Server* m_server = nullptr;
    LogCapture m_log{{"SLog"}};
    AnalyticsSettings m_settings;

private slots:
    void init()
    {
        QCoreApplication::setOrganizationName("Quillon");
        // Earlier servers stay: they still finish their own connections.
        m_server = new Server(this);
        m_settings.endpoint =
            QUrl(QStringLiteral("http://127.0.0.1:%1/v1/batch").arg(m_server->serverPort()));
        m_settings.now =
            std::bind([](auto moment) { return moment; }, QDateTime({2031, 2, 3}, {14, 5, 6}));
        m_log.clear();
    }

    void aSessionIsOneBatch()
    {
        QSettings().clear();
        SLog log(m_settings);
        log.track("before", {});
        log.startLogging(QStringLiteral("k\u00E9y:"));
        log.startLogging("second");
        std::thread([&log] {
            log.track(QStringLiteral("Gr\u00FCn \u6F22"), {{"b", 2.5}, {"a", true}});
        }).join();
        log.stopLogging();
        log.track("after", {});
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests.size(), 1, patience);
        QVERIFY(m_log.contains("ERROR", "multiple times; doing nothing in startLogging"));
        const QString id = QSettings().value("SLog/ComputerId").toString();
        QCOMPARE(id, QUuid(id).toString());
        const QString sent = m_server->requests[0].replace(id.mid(1, 36), "ID").replace('"', '\'');
        const QString parts = QStringLiteral(R"(POST /v1/batch HTTP/1.1
Content-Type: application/json
Authorization: Basic a+l5Og==
{'batch':[{'anonymousId':'ID','context':{'app':{'build':
},'computerId':'ID','library':{'name':'Mendrel','version':'1.0.0'}
'timestamp':'2031-02-03T14:05:06','type':'identify'},{'anonymousId':'ID'
'Mendrel Session Started','properties':{'architectureBits':'
'Grün ?','properties':{'a':true,'b':2.5},'timestamp':'2031-02-03T14:05:06','type':'track'}],'sentAt')");
        for (const QString& part : parts.split('\n'))
            QVERIFY2(sent.contains(part), qPrintable(part + " in " + sent));
    }

    // One event loop fires its timers in the order of their due times, on a busy machine too.
    void laterMessagesDoNotDelayThePost()
    {
        QCOMPARE(AnalyticsSettings().flushInterval, 10'000);
        QCOMPARE(AnalyticsSettings().endpoint.scheme(), QStringLiteral("https"));
        QStringList order;
        m_settings.flushInterval = 100;
        QTimer::singleShot(80, Qt::PreciseTimer, this, [&] { order << "early"; });
        Common::SLogSingleton session("key", m_settings, [](auto...) {});
        connect(&session, &Common::SLogSingleton::flush, this, [&] { order << "post"; });
        QTimer::singleShot(130, Qt::PreciseTimer, this, [&] { order << "late"; });
        QTimer trickle;
        connect(&trickle, &QTimer::timeout, this, [&session] { session.emitTrack("x", {}, ""); });
        trickle.start(10);
        QTRY_VERIFY_WITH_TIMEOUT(order.size() >= 4, patience);
        QCOMPARE(order.mid(0, 4), QStringList({"early", "post", "late", "post"}));
        QTRY_VERIFY_WITH_TIMEOUT(m_server->requests.value(0).contains("\"x\""), patience);
    }

    void moreThanTwoHundredThousandBytesGoAtOnce()
    {
        m_settings.flushInterval = 60'000;
        SLog log(m_settings);
        for (const int bytes : {198'000, 200'000}) {
            m_server->requests.clear();
            log.startLogging("key");
            log.track("Large", {{"text", QString(bytes / 2, QChar(0xE9))}}); // 2 bytes in UTF-8
            log.track("Next");
            log.track("Last");
            log.stopLogging();
            QTRY_VERIFY_WITH_TIMEOUT(m_server->requests.join(' ').contains("Last"), patience);
            QCOMPARE(m_server->requests.filter("Next").filter("Last").size(), 1);
            QCOMPARE(m_server->requests.filter("Large").filter("Next").size(), bytes < 200'000);
        }
    }

    // By the system's own TLS on Windows.
    void onlyATrustedServerIsPostedTo()
    {
        m_settings.endpoint.setScheme("https");
        m_settings.endpoint.setPort(qEnvironmentVariableIntValue("HTTPS_PORT"));
        for (const char* error : {"SslHandshakeFailed", "OperationNotImplemented"}) {
            m_log.clear();
            SLog log(m_settings);
            log.startLogging("key");
            log.stopLogging();
            QTRY_COMPARE_WITH_TIMEOUT(m_log.count("ERROR"), 2, patience);
            QVERIFY2(m_log.contains("ERROR", error), qPrintable(m_log.lines().join('\n')));
            QSslConfiguration known = QSslConfiguration::defaultConfiguration();
            known.setCaCertificates(
                QSslCertificate::fromPath(qEnvironmentVariable("HTTPS_FILES") + "/server.pem"));
            QSslConfiguration::setDefaultConfiguration(known);
        }
    }

    void aFailedPostIsReportedAndNotRepeated()
    {
        for (const char* response :
             {"HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n", "", "HTTP/1.1 200 OK\r\n"}) {
            init();
            m_server->response = response;
            m_settings.responseTimeout = strstr(response, " OK") ? 100 : patience;
            SLog log(m_settings);
            log.startLogging("key");
            log.stopLogging();
            QTRY_COMPARE_WITH_TIMEOUT(m_log.count("ERROR"), 2, patience);
            QVERIFY(m_log.contains("ERROR", "Error in network reply in SLog: QNetworkReply::"));
            QCOMPARE(m_server->requests.size(), 1);
        }
    }
};

QTEST_GUILESS_MAIN(SLogTest)
#include "tst_slog.moc"
