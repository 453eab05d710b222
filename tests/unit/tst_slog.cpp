#include "Common/BuildType.h"
#include "Common/BuildVersion.h"
#include "Common/Logging/OSInformation.h"
#include "Common/Logging/SLog.h"
#include "support/LogCapture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <thread>

using Common::AnalyticsSettings;
using Common::SLog;

namespace {

constexpr int patience = 30'000;

// Keeps each request, head and body, and sends the same response to all; an empty one disconnects.
class Server : public QTcpServer
{
public:
    QByteArray response;
    QStringList heads, bodies;

    explicit Server(QObject* parent)
        : QTcpServer(parent)
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { receive(*socket); });
        });
        listen(QHostAddress::LocalHost);
    }

private:
    void receive(QTcpSocket& socket)
    {
        const QByteArray all = socket.peek(socket.bytesAvailable());
        const int head = all.indexOf("\r\n\r\n") + 4;
        const int length = all.mid(all.indexOf("Content-Length: ") + 16).split('\r')[0].toInt();
        qDebug() << all.size() << head << length;
        if (head < 4 || all.size() < head + length)
            return;
        heads << QString::fromLatin1(socket.read(head));
        bodies << QString::fromLatin1(socket.read(length));
        socket.write(response);
        if (response.isEmpty())
            socket.close();
    }
};

} // namespace

class SLogTest : public QObject
{
    Q_OBJECT

private:
    Server* m_server = nullptr;
    LogCapture m_log{{"SLog"}};
    AnalyticsSettings m_settings;

private slots:
    void init()
    {
        QCoreApplication::setOrganizationName("Quillon");
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        // Earlier ones stay: they still finish their own connections.
        m_server = new Server(this);
        m_server->response = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n";
        m_settings.endpoint = QUrl(
            QStringLiteral("http://127.0.0.1:%1%2").arg(m_server->serverPort()).arg("/v1/batch"));
        m_settings.now = [] {
            return QDateTime({2031, 2, 3}, {14, 5, 6, 789});
        };
        m_log.clear();
    }

    void aSessionIsOneBatchToTheLetter()
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
        log.stopLogging();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->bodies.size(), 1, patience);
        QCOMPARE(m_log.messages().join('\n'),
                 QStringLiteral("ERROR Initialized Segment logging multiple times; doing nothing "
                                "in startLogging"));
        QVERIFY(m_server->heads[0].startsWith("POST /v1/batch HTTP/1.1\r\n"));
        QVERIFY(m_server->heads[0].contains("\r\nContent-Type: application/json\r\n"));
        QVERIFY(m_server->heads[0].contains("\r\nAuthorization: Basic a+l5Og==\r\n"));

        const QString id = QSettings().value("SLog/ComputerId").toString();
        QVERIFY(QRegularExpression("^\\{[0-9a-f-]{36}\\}$").match(id).hasMatch());
        const auto session = QRegularExpression("sessionId\":\"([0-9a-f-]{36})\"");
        const auto languages = QJsonArray::fromStringList(QLocale::system().uiLanguages());
        const QString base =
            QStringLiteral("{'anonymousId':'%1','context':{'app':{'build':'%2','name':'Mendrel',"
                           "'version':'%7 %3'},'computerId':'%1','library':{'name':'Mendrel',"
                           "'version':'1.0.0'},'os':{'name':'%4','version':'%5'},'sessionId':'%6'}")
                .arg(id.mid(1, 36), Common::BuildVersion::buildNumberString(),
                     Common::BuildVersion::majorMinorRevisionString(), QSysInfo::productType(),
                     QSysInfo::productVersion(), session.match(m_server->bodies[0]).captured(1),
                     Common::BuildType::buildTypeString());
        const QString expected =
            QStringLiteral("{'batch':[%1,'timestamp':%2,'type':'identify'},%1,'event':'Mendrel "
                           "Session Started','properties':{'architectureBits':'%3',"
                           "'selectedLanguage':'English','systemLanguages':%4},'timestamp':%2,"
                           "'type':'track'},%1,'event':'Gr\u00FCn ?','properties':{'a':true,'b':"
                           "2.5},'timestamp':%2,'type':'track'}],'sentAt':%2}")
                .arg(base, "'2031-02-03T14:05:06'", Common::GetOSArchitectureBits(),
                     QJsonDocument(languages).toJson(QJsonDocument::Compact));
        QCOMPARE(m_server->bodies[0], QString(expected).replace('\'', '"'));
    }

    // One event loop fires its timers in the order of their due times, on a busy machine too.
    void laterMessagesDoNotDelayThePost()
    {
        QCOMPARE(AnalyticsSettings().flushInterval, 10'000);
        QVERIFY(AnalyticsSettings().endpoint.toString().startsWith("https://"));
        QStringList order;
        const auto note = [&order](const char* what) {
            return [&order, what] {
                order << what;
            };
        };
        m_settings.flushInterval = 100;
        QTimer::singleShot(80, Qt::PreciseTimer, this, note("early"));
        Common::SLogSingleton session("key", m_settings, [](auto...) {});
        connect(&session, &Common::SLogSingleton::flush, this, note("post"));
        QTimer::singleShot(130, Qt::PreciseTimer, this, note("late"));
        QTimer trickle;
        connect(&trickle, &QTimer::timeout, this, [&session] { session.emitTrack("x", {}, ""); });
        trickle.start(10);
        QTRY_VERIFY_WITH_TIMEOUT(order.size() >= 4, patience);
        QCOMPARE(order.mid(0, 4), QStringList({"early", "post", "late", "post"}));
        QTRY_VERIFY_WITH_TIMEOUT(m_server->bodies.value(0).contains("\"event\":\"x\""), patience);
    }

    void moreThanTwoHundredThousandBytesGoAtOnce()
    {
        m_settings.flushInterval = 60'000;
        SLog log(m_settings);
        for (const int bytes : {198'000, 200'000}) {
            m_server->bodies.clear();
            log.startLogging("key");
            log.track("Large", {{"text", QString(bytes / 2, QChar(0xE9))}}); // 2 bytes in UTF-8
            log.track("Next");
            log.stopLogging();
            QTRY_VERIFY_WITH_TIMEOUT(m_server->bodies.join(' ').contains("Next"), patience);
            QCOMPARE(m_server->bodies.filter("Large").filter("Next").size(), bytes < 200'000);
        }
    }

    void aFailedPostIsReportedAndNotRepeated_data()
    {
        QTest::addColumn<QByteArray>("response");
        QTest::addColumn<QString>("error");
        QTest::newRow("refused") << QByteArray("HTTP/1.1 500 No\r\nContent-Length: 0\r\n\r\n")
                                 << "InternalServerError";
        QTest::newRow("closed") << QByteArray() << "(ContentReSend|RemoteHostClosed)Error";
        QTest::newRow("silent") << QByteArray("HTTP/1.1 200 OK\r\n") << "OperationCanceledError";
    }
    void aFailedPostIsReportedAndNotRepeated()
    {
        QFETCH(QByteArray, response);
        m_server->response = response;
        m_settings.responseTimeout = response.endsWith("OK\r\n") ? 100 : patience;
        SLog log(m_settings);
        log.startLogging("key");
        log.stopLogging();
        QTRY_COMPARE_WITH_TIMEOUT(m_log.count("ERROR"), 2, patience);
        QFETCH(QString, error);
        const QRegularExpression line("ERROR Error in network reply in SLog: QNetworkReply::" +
                                      error);
        QVERIFY2(line.match(m_log.messages().at(0)).hasMatch(), qPrintable(m_log.messages()[0]));
        QVERIFY(m_log.messages().at(1).size() > 10);
        QCOMPARE(m_server->bodies.size(), 1);
    }
};

QTEST_GUILESS_MAIN(SLogTest)
#include "tst_slog.moc"
