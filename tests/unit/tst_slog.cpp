#include "AnalyticsServer.h"
#include "Common/BuildType.h"
#include "Common/BuildVersion.h"
#include "Common/Logging/ComputerId.h"
#include "Common/Logging/OSInformation.h"
#include "Common/Logging/SLog.h"
#include "support/LogCapture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkProxy>
#include <QQmlEngine>
#include <QSettings>
#include <QtTest>

#include <thread>

using Common::AnalyticsSurroundings;
using Common::SLog;

namespace {

constexpr int patience = AnalyticsServer::patience;

class BrokenReply : public QNetworkReply
{
public:
    BrokenReply()
    {
        setError(UnknownNetworkError, "broken");
        QTimer::singleShot(0, this, &QNetworkReply::finished);
    }
    void abort() override {}
    qint64 readData(char*, qint64) override { return -1; }
};

// Knows at once that nothing can be sent.
class BrokenManager : public QNetworkAccessManager
{
    QNetworkReply* createRequest(Operation, const QNetworkRequest&, QIODevice*) override
    {
        return new BrokenReply;
    }
};

// The longest time for which the event loop of this thread did not come round.
class Heartbeat
{
public:
    Heartbeat()
    {
        m_since.start();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                         [this] { m_longest = qMax(m_longest, m_since.restart()); });
        m_timer.start(5);
    }
    qint64 longest() const { return m_longest; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
};

} // namespace

class SLogTest : public QObject
{
    Q_OBJECT

private:
    AnalyticsServer m_server;
    LogCapture m_log{{"SLog"}};

    AnalyticsSurroundings surroundings(const QString& way, int flushInterval = 60'000) const
    {
        AnalyticsSurroundings result;
        result.host = m_server.host(way);
        result.now = [] {
            return QDateTime(QDate(2031, 2, 3), QTime(4, 5, 6, 789));
        };
        result.flushInterval = flushInterval;
        result.answerWithin = way == "silent" ? 1'500 : patience;
        return result;
    }

    AnalyticsRequest nextRequest(int wait = patience) { return m_server.next(wait); }

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName("Quillon");
        QCoreApplication::setApplicationName("tst_slog");
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        QSettings().clear();
        QVERIFY(m_server.start());
    }

    void init() { m_log.clear(); }

    // Every test takes all that arrives; nothing may be left over.
    void cleanup() { QCOMPARE(nextRequest(50).way, QString()); }

    void cleanupTestCase() { QVERIFY(m_server.stop()); }

    void aSessionIsOneBatchToTheLetter()
    {
        SLog log(surroundings("answer"));
        log.track("before", {});
        log.startLogging(QString::fromUtf8("kéy:"));
        log.track(QString::fromUtf8("Grün 漢 \xf0\x9f\x98\x80 end"),
                  {{"b", 2.5}, {"a", QVariantList{1, true}}});
        log.track("Empty");
        log.stopLogging();
        log.track("after", {});
        log.stopLogging();

        const AnalyticsRequest request = nextRequest();
        QCOMPARE(request.line, QByteArray("POST /v1/batch HTTP/1.1"));
        QCOMPARE(request.headers["Content-Type"], QByteArray("application/json"));
        QCOMPARE(request.headers["Authorization"], QByteArray("Basic a+l5Og=="));
        QCOMPARE(request.headers["Host"], surroundings("answer").host.toLatin1());

        const QString stored = QSettings().value("SLog/ComputerId").toString();
        QVERIFY(QRegularExpression("^\\{[0-9a-f-]{36}\\}$").match(stored).hasMatch());
        const QString computer = stored.mid(1, 36);
        const QRegularExpressionMatch session =
            QRegularExpression("\"sessionId\":\"([0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12})\"")
                .match(QString::fromLatin1(request.body));
        QVERIFY(session.hasMatch());

        const QByteArray languages =
            QJsonDocument(QJsonArray::fromStringList(QLocale::system().uiLanguages())).toJson();
        QString expected = QString::fromUtf8(
            "{'batch':[$base,'timestamp':'$time','type':'identify'},"
            "$base,'event':'Mendrel Session Started','properties':{'architectureBits':'$bits',"
            "'selectedLanguage':'English','systemLanguages':$languages},"
            "'timestamp':'$time','type':'track'},"
            "$base,'event':'Grün ? ?? end','properties':{'a':[1,true],'b':2.5},"
            "'timestamp':'$time','type':'track'},"
            "$base,'event':'Empty','properties':{},'timestamp':'$time','type':'track'}],"
            "'sentAt':'$time'}");
        expected.replace("$base", "{'anonymousId':'$id','context':{'app':{'build':'$build',"
                                  "'name':'Mendrel','version':'$version'},'computerId':'$id',"
                                  "'library':{'name':'Mendrel','version':'1.0.0'},"
                                  "'os':{'name':'$os','version':'$release'},"
                                  "'sessionId':'$session'}");
        const QList<std::pair<QString, QString>> values{
            {"$time", "2031-02-03T04:05:06"},
            {"$id", computer},
            {"$build", Common::BuildVersion::buildNumberString()},
            {"$version", Common::BuildType::buildTypeString() + " " +
                             Common::BuildVersion::majorMinorRevisionString()},
            {"$os", QSysInfo::productType()},
            {"$release", QSysInfo::productVersion()},
            {"$session", session.captured(1)},
            {"$bits", Common::GetOSArchitectureBits()},
            {"$languages", QString::fromUtf8(languages).simplified().remove(' ')}};
        for (const auto& [name, value] : values)
            expected.replace(name, value);
        expected.replace('\'', '"');
        QCOMPARE(QString::fromLatin1(request.body), expected);
        QCOMPARE(request.headers["Content-Length"], QByteArray::number(expected.size()));
        QCOMPARE(m_log.lines(), QStringList());

        log.startLogging("key");
        log.stopLogging();
        const QByteArray next = nextRequest().body;
        QVERIFY(next.contains(computer.toLatin1()));
        QVERIFY(!next.contains(session.captured(1).toLatin1()));
    }

    void laterMessagesDoNotPutThePostOff()
    {
        QCOMPARE(AnalyticsSurroundings().flushInterval, 10'000);
        constexpr int interval = 400;
        SLog log(surroundings("answer", interval));
        QElapsedTimer since;
        since.start();
        log.startLogging("key");
        QStringList sent{"identify", "Mendrel Session Started"};
        QTimer trickle;
        connect(&trickle, &QTimer::timeout, this, [&] {
            sent << QString::number(sent.size());
            log.track(sent.last());
        });
        trickle.start(interval / 20);
        QStringList arrived = nextRequest().events();
        QVERIFY(since.elapsed() >= interval * 95 / 100);
        QVERIFY(arrived.size() > 2);
        trickle.stop();
        log.track("last");
        sent << "last";
        while (arrived.size() < sent.size()) {
            const QStringList more = nextRequest().events();
            QVERIFY(!more.isEmpty());
            arrived += more;
        }
        QCOMPARE(arrived, sent);
        log.stopLogging();
    }

    void moreThanTwoHundredThousandBytesGoAtOnce_data()
    {
        QTest::addColumn<int>("bytes");
        QTest::addColumn<bool>("goes");
        QTest::newRow("at the bound") << 200'000 << false;
        QTest::newRow("above it") << 200'001 << true;
    }

    void moreThanTwoHundredThousandBytesGoAtOnce()
    {
        QFETCH(int, bytes);
        QFETCH(bool, goes);
        AnalyticsSurroundings with = surroundings("answer");
        SLog log(with);
        log.startLogging("key");
        // What the two first messages take, and what a message takes that has no text yet.
        const Common::Analytics::Sender sender{Common::computerId(), {}, QString(36, '0')};
        const QString time = Common::Analytics::timestampText(with.now());
        const auto message = [&](const QString& event, const QVariantMap& properties) {
            return Common::Analytics::sizeOf(Common::Analytics::trackMessage(
                sender, sender.anonymousId, time, event, properties));
        };
        const int before =
            Common::Analytics::sizeOf(
                Common::Analytics::identifyMessage(sender, sender.anonymousId, time)) +
            message("Mendrel Session Started", Common::Analytics::sessionProperties()) +
            message("Large", {{"text", QString()}});
        // A letter of two bytes: bytes count, not letters.
        const QString text = QString::fromUtf8("é") + QString(bytes - before - 2, 'x');
        log.track("Large", {{"text", text}});
        QStringList all{"identify", "Mendrel Session Started", "Large"};
        QCOMPARE(nextRequest(goes ? patience : 500).events(), goes ? all : QStringList());
        log.track("Next");
        log.stopLogging();
        QCOMPARE(nextRequest().events(), goes ? QStringList("Next") : all << "Next");
    }

    void aSecondStartChangesNothing()
    {
        SLog first(surroundings("answer"));
        SLog second(surroundings("refuse"));
        first.startLogging("one");
        second.startLogging("two");
        QCOMPARE(m_log.messages(),
                 QStringList("ERROR Initialized Segment logging multiple times; doing nothing in "
                             "startLogging"));
        second.track("Shared");
        second.stopLogging();
        const AnalyticsRequest request = nextRequest();
        QCOMPARE(request.way, QStringLiteral("answer"));
        QCOMPARE(request.headers["Authorization"], "Basic " + QByteArray("one").toBase64());
        QCOMPARE(request.events(), QStringList({"identify", "Mendrel Session Started", "Shared"}));
    }

    void failedPosts_data()
    {
        QTest::addColumn<QString>("error");
        QTest::addColumn<bool>("arrives");
        QTest::newRow("answer") << QString() << true;
        QTest::newRow("redirect") << QString() << true;
        QTest::newRow("refuse") << "InternalServerError" << true;
        QTest::newRow("close") << "ContentReSendError" << true;
        QTest::newRow("silent") << "OperationCanceledError" << true;
        QTest::newRow("absent") << "ConnectionRefusedError" << false;
        QTest::newRow("stranger") << "SslHandshakeFailedError" << false;
        QTest::newRow("other name") << "SslHandshakeFailedError" << false;
    }

    // Each batch is sent once, whatever becomes of it, and the window goes on meanwhile.
    void failedPosts()
    {
        QFETCH(QString, error);
        QFETCH(bool, arrives);
        const QString way = QTest::currentDataTag();
        const Heartbeat heartbeat;
        SLog log(surroundings(way, 1));
        const auto expectOutcome = [&](const QStringList& events) {
            if (arrives) {
                const AnalyticsRequest request = nextRequest();
                QCOMPARE(request.way, way);
                QCOMPARE(request.events(), events);
            }
            if (error.isEmpty())
                return;
            QTRY_COMPARE_WITH_TIMEOUT(m_log.count("ERROR"), 2, patience);
            const QStringList lines = m_log.messages();
            QCOMPARE(lines.first(),
                     "ERROR Error in network reply in SLog: QNetworkReply::" + error);
            QVERIFY2(lines.last().size() > 10, qPrintable(lines.last()));
            m_log.clear();
        };
        log.startLogging("key");
        expectOutcome({"identify", "Mendrel Session Started"});
        log.track("Later");
        log.stopLogging();
        expectOutcome({"Later"});
        QTest::qWait(100);
        QCOMPARE(m_log.lines(), QStringList());
        QVERIFY2(heartbeat.longest() < 1'000, qPrintable(QString::number(heartbeat.longest())));
    }

    void anErrorAtOnceIsToldAtOnce()
    {
        QStringList told;
        auto* poster = new Common::Analytics::Poster(
            std::make_unique<BrokenManager>(), QUrl("https://analytics.invalid"), 60'000,
            [&](const char* what, QNetworkReply::NetworkError error, const QString& text) {
                told << what;
                QCOMPARE(error, QNetworkReply::UnknownNetworkError);
                QCOMPARE(text, QStringLiteral("broken"));
            });
        const QPointer<QObject> watched = poster;
        Common::Analytics::Poster::Owner owner(poster);
        poster->post("{}", "Basic");
        QCOMPARE(told, QStringList("Error POSTing batched logging request:"));
        owner.reset();
        QTRY_VERIFY(watched.isNull());
        QCOMPARE(told.mid(1), QStringList("Error in network reply in SLog:"));
    }

    void manyThreadsRecordIntoOneSession()
    {
        constexpr int threads = 4;
        constexpr int each = 50;
        SLog log(surroundings("answer"));
        log.startLogging("key");
        std::vector<std::thread> callers;
        for (int number = 0; number < threads; ++number) {
            callers.emplace_back([&log, number] {
                for (int index = 0; index < each; ++index)
                    log.track(QString::number(number), {{"index", index}});
            });
        }
        for (std::thread& caller : callers)
            caller.join();
        log.stopLogging();
        const AnalyticsRequest request = nextRequest();
        QCOMPARE(request.events().size(), 2 + threads * each);
        QMap<QString, int> next;
        const QJsonDocument document = QJsonDocument::fromJson(request.body);
        for (const QJsonValue& message : document["batch"].toArray()) {
            if (message["properties"].toObject().contains("index"))
                QCOMPARE(message["properties"]["index"].toInt(),
                         next[message["event"].toString()]++);
        }
        QCOMPARE(next.values(), QList<int>({each, each, each, each}));
    }

    // Plain threads: ThreadSanitizer passes over what the framework's own threads call.
    void sessionsStartAndStopOnManyThreads()
    {
        constexpr int each = 8;
        SLog log(surroundings("answer"));
        std::atomic<int> rounds{0};
        std::atomic<bool> isDone{false};
        std::vector<std::thread> threads;
        for (int number = 0; number < 3; ++number) {
            threads.emplace_back([&] {
                QEventLoop loop;
                const auto spin = [&loop] {
                    QTimer::singleShot(2, &loop, &QEventLoop::quit);
                    loop.exec();
                };
                for (int round = 0; round < each; ++round, ++rounds) {
                    log.startLogging("key");
                    for (int event = 0; event < 20; ++event)
                        log.track("Event");
                    log.stopLogging();
                    spin();
                }
                while (!isDone)
                    spin();
            });
        }
        QTRY_COMPARE_WITH_TIMEOUT(rounds.load(), each * int(threads.size()), patience);
        const int sessions = rounds - m_log.count("ERROR");
        QStringList begun;
        for (int number = 0; number < sessions; ++number)
            begun << nextRequest().events().mid(0, 2);
        isDone = true;
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(sessions > 0);
        QCOMPARE(begun.count("identify"), sessions);
        QCOMPARE(begun.count("Mendrel Session Started"), sessions);
    }

    void scriptsRecordWhateverTheyHave()
    {
        SLog log(surroundings("answer"));
        QJSEngine engine;
        QQmlEngine::setObjectOwnership(&log, QQmlEngine::CppOwnership);
        engine.globalObject().setProperty("SLog", engine.newQObject(&log));
        const QJSValue result = engine.evaluate(
            "SLog.startLogging('key'); SLog.track('None');"
            "var loop = { on: true }; loop.self = loop;"
            "SLog.track('All', { n: 1, list: [1, 'a'], nothing: null, not: NaN, loop: loop,"
            "                    call: function () {}, later: undefined });"
            "SLog.stopLogging();");
        QVERIFY2(!result.isError(), qPrintable(result.toString()));
        const AnalyticsRequest request = nextRequest();
        const QJsonValue properties =
            QJsonDocument::fromJson(request.body)["batch"].toArray().last()["properties"];
        QCOMPARE(properties["n"].toInt(), 1);
        QCOMPARE(properties["list"].toArray(), QJsonArray({1, "a"}));
        QVERIFY(properties["not"].isNull());
        QCOMPARE(request.events().mid(2), QStringList({"None", "All"}));
    }

    void aStoreThatCannotBeWrittenIsTold()
    {
        const LogCapture log({"ComputerId"});
        const QString place = QFileInfo(QSettings().fileName()).absolutePath() + "/..";
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/proc/nowhere");
        QCOMPARE(Common::computerId().size(), 36);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, place);
        QVERIFY(log.contains("WARN", "Could not store the computer id in"));
    }
};

QTEST_GUILESS_MAIN(SLogTest)
#include "tst_slog.moc"
