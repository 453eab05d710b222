// From the text of Logging.ini to the lines that are written. Levels and destinations are
// process-wide and only ever add up: each case uses logger names of its own.
#include "Common/Logging/IniDocument.h"
#include "Common/Logging/LoggingConfiguration.h"
#include "Common/Logging/LoggingStartup.h"
#include "qslog/LoggerRegistry.h"
#include "qslog/MessageBuilder.h"
#include "support/TempFiles.h"

#include <QtTest>

#include <unistd.h>

using Common::IniDocument;

static QStringList debugMessages;

class LoggingStartupTest : public QObject
{
    Q_OBJECT

    const TempFiles m_temp;
    Common::LoggingFiles m_files{m_temp.path("data/Logs"), m_temp.put("shipped.ini"),
                                 m_temp.path("data/user/Logging.ini")};

    bool load(const QString& text, bool allowDebugLevels = true)
    {
        return Common::loadLoggingConfiguration(m_temp.put("Logging.ini", text.toUtf8()),
                                                m_temp.root(), allowDebugLevels);
    }
    static int levelOf(const QString& logger)
    {
        return static_cast<int>(QsLogging::getLogger(logger)->loggingLevel());
    }

    // What standard error gets of one line.
    QByteArray say(const QString& logger)
    {
        QFile capture(m_temp.put("stderr.txt"));
        capture.open(QIODevice::WriteOnly);
        const int kept = dup(STDERR_FILENO);
        dup2(capture.handle(), STDERR_FILENO);
        QsLogging::MessageBuilder(QsLogging::Level::Info, logger).stream() << qPrintable(logger);
        dup2(kept, STDERR_FILENO);
        close(kept);
        return m_temp.get("stderr.txt");
    }

private slots:
    void init()
    {
        debugMessages.clear();
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            debugMessages << text;
        });
    }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void iniTextsAreReadOrRefused()
    {
        // The value of "key" in "[s]".
        const QList<std::pair<QByteArray, QString>> rows{
            {"\xEF\xBB\xBF[ S ]\r\n  KEY =  a=b;c \r\n", "a=b;c"},
            {"; comment\n # [t\n\nkey=above\n[s]\nkey=", ""},
            {"[s]\nkey=1\n[t]\nkey=2\n[S]\nkey=3\n", "3"},
            {"[s]\nlevel\n", "invalid"},
            {"[s]\n = INFO\n", "invalid"},
            {"[", "invalid"},
            {"[s] ; why\n", "invalid"},
            {"[s]\n\xEF\xBB\xBF[t]\n", "invalid"},
            {QByteArray(IniDocument::maximumSize, '\n'), "absent"},
            {QByteArray(IniDocument::maximumSize + 1, '\n'), "invalid"}};
        for (const auto& [text, expected] : rows) {
            const auto document = IniDocument::parse(text);
            const auto* section = document ? document->section("s") : nullptr;
            const QString value = section ? *section->value("key") : "absent";
            QCOMPARE(document ? value : "invalid", expected);
        }
    }

    void levelsAreSetAndHeldBackInARelease()
    {
        QCOMPARE(levelOf("BeforeAnyFile"), 6);
        const QStringList names{"TRACE", "DEBUG", "INFO", "WARN", "ERROR", "FATAL", "OFF", "Info"};
        for (int i = 0; i < names.size(); ++i) {
            const QString text = "[Default]\nLEVEL=" + names[i] + "\n[%1%2]\nlevel=" + names[i];
            QVERIFY(load(text.arg("Dev", names[i])) && load(text.arg("Rel", names[i]), false));
            QCOMPARE(levelOf("Dev" + names[i]), qMin(i, 6));
            QCOMPARE(levelOf("Rel" + names[i]), qBound(2, i, 6));
            // "Default" is the default section, which is never held back, and a logger too.
            QCOMPARE(levelOf("New" + names[i]), qMin(i, 6));
            QCOMPARE(levelOf("Default"), qBound(2, i, 6));
        }
        QVERIFY(load("[default]\nlevel=WARN\n[DevINFO]\nconsole=off\n[devwarn]\nlevel=OFF\n"));
        // The last one is a regular file that opens and fails to be read, as on a bad disk.
        for (const char* unreadable : {"missing.ini", ".", "/proc/self/mem"})
            QVERIFY(!Common::loadLoggingConfiguration(m_temp.path(unreadable), "", true));
        QVERIFY(!load("[default]\nlevel=TRACE\n[DevINFO]\nlevel=TRACE\nnonsense\n"));
        QCOMPARE(levelOf("default"), 3);
        QCOMPARE(levelOf("DevINFO"), 2);
        QCOMPARE(levelOf("DevWARN"), 3);
        QVERIFY(load("[DevINFO]\n"));
        QCOMPARE(levelOf("AfterNoDefault"), 6);
    }

    void filesJoinTheDefaultsAndNotTheirOwnSection()
    {
        const QString text = "[default]\nfile=all.log\n[Owner]\nfile=own.log\n[Next]\n";
        QVERIFY(load(text) && load(text));
        for (const char* logger : {"Owner", "Next", "Later"})
            say(logger);
        QCOMPARE(m_temp.get("all.log").count('\n'), 3);
        QCOMPARE(m_temp.get("own.log").count('\n'), 2);
        QVERIFY(!m_temp.get("own.log").contains("Owner"));
        m_temp.put("sized.log", QByteArray(1000, 'x'));
        for (const char* size : {"10k", "9223372036854775808", "1000", "999"})
            QVERIFY(load(QStringLiteral("[default]\nfile=sized.log\ntruncate=%1").arg(size)));
        QCOMPARE(debugMessages,
                 QStringList({"Could not parse truncate size \"10k\"",
                              "Could not parse truncate size "
                              "\"9223372036854775808\"",
                              "Truncated log file to 1000", "Truncated log file to 999"}));
        QCOMPARE(m_temp.get("sized.log.old").size(), 1000);
        // An empty name is the log directory itself: nothing is moved or lost.
        QVERIFY(load("[default]\nfile=\ntruncate=1\n"));
        QVERIFY(QFileInfo(m_temp.root()).isDir());
    }

    void theConsoleFollowsTheFile()
    {
        QVERIFY(load("[default]\nconsole=on\n[Muted]\nconsole=ON\n"));
        QVERIFY(say("Heard").startsWith("INFO ") && say("Heard").endsWith(" Heard \n"));
        QCOMPARE(say("Muted"), QByteArray());
        QVERIFY(load("[default]\ncolors=on\n[Muted]\nconsole=on\n"));
        QVERIFY(load("[default]\ncolors=off\n"));
        QVERIFY(say("Muted").startsWith("\x1b[1;30mINFO\x1b[0m"));
    }

    void theUsersFileOverridesAndIsWatched()
    {
        const auto becomes = [this](int level, const char* name, const char* file) {
            const QString path = m_temp.put(file, QByteArray("[User]\nlevel=") + name);
            return rename(qPrintable(path), qPrintable(m_files.userIniPath)) == 0 &&
                   QTest::qWaitFor([&] { return levelOf("User") == level; }, 30'000);
        };
        m_temp.put("shipped.ini", "[User]\nlevel=TRACE\n[Shipped]\nlevel=ERROR\n");
        m_temp.put("data/user/Logging.ini", "[User]\nlevel=DEBUG\n");
        Common::startLogging(m_files, false);
        QVERIFY(!QCoreApplication::instance()->findChild<QFileSystemWatcher*>());
        Common::startLogging(m_files, true);
        QCOMPARE(levelOf("User"), 1);
        QCOMPARE(levelOf("Shipped"), 4);
        QCOMPARE(static_cast<int>(QFile::permissions(m_files.logDirectory)) & 0x77, 0);
        // It changes, is replaced as editors do it, goes with its directory, and comes again.
        QVERIFY(becomes(3, "WARN", "data/user/Logging.ini"));
        QVERIFY(becomes(4, "ERROR", "data/user/draft"));
        QVERIFY(becomes(5, "FATAL", "data/user/Logging.ini"));
        debugMessages.clear();
        QVERIFY(QDir(m_temp.path("data/user")).removeRecursively());
        QTRY_COMPARE_WITH_TIMEOUT(debugMessages.size(), 1, 30'000);
        QVERIFY(becomes(0, "TRACE", "data/user/Logging.ini"));
        m_files.logDirectory = m_files.userIniPath + "/below";
        Common::startLogging(m_files, false);
        debugMessages.removeDuplicates();
        const auto quoted = [](const char* text, const QString& path) {
            return QStringLiteral("%1 \"%2\"").arg(text, path);
        };
        QCOMPARE(
            debugMessages,
            QStringList({quoted("Reload logging configuration from", m_files.userIniPath),
                         quoted("Could not make directory for log files:", m_files.logDirectory),
                         quoted("Loading logging configuration from", m_files.applicationIniPath),
                         quoted("Loading logging configuration from", m_files.userIniPath)}));
    }
};

QTEST_GUILESS_MAIN(LoggingStartupTest)
#include "tst_loggingstartup.moc"
