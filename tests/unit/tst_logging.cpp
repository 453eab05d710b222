// SPDX-License-Identifier: LicenseRef-Proprietary
// From the text of Logging.ini to the lines in files and on the console. Levels and destinations
// are process-wide and cumulative: each case uses its own logger names.
#include "Common/Logging/IniDocument.h"
#include "Common/Logging/LoggingConfiguration.h"
#include "Common/Logging/LoggingStartup.h"
#include "Common/Logging/SettingsFileWatcher.h"
#include "qslog/DebugOutputDestination.h"
#include "qslog/FileDestination.h"
#include "qslog/Log.h"
#include "qslog/LogFailures.h"
#include "support/TempFiles.h"

#include <QtTest>

#include <csignal>
#include <filesystem>
#include <thread>
#ifdef Q_OS_LINUX // full disks and missing permissions are made by calls of its own
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <unistd.h>
#else
#include <windows.h>
#endif

using Common::IniDocument;
using namespace QsLogging;

// Logs after the program's objects and the framework's are gone; a crash fails the program.
static const struct AtEnd
{
    ~AtEnd() { MessageBuilder(Level::Info, "atEnd").stream() << QStringLiteral("\u6d17"); }
} atEnd;

// What the action writes to the system's diagnostic channel.
#ifdef Q_OS_LINUX
static QString consoleOf(const std::function<void()>& action)
{
    QTemporaryFile capture;
    capture.open();
    const int kept = dup(STDERR_FILENO);
    dup2(capture.handle(), STDERR_FILENO);
    action();
    dup2(kept, STDERR_FILENO);
    close(kept);
    capture.seek(0);
    return QString::fromUtf8(capture.readAll());
}
#else
static QByteArray captured;

static QString consoleOf(const std::function<void()>& action)
{
    // OutputDebugStringW() raises an exception for debuggers.
    const auto capture = [](EXCEPTION_POINTERS* pointers) -> LONG {
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode != DBG_PRINTEXCEPTION_C)
            return EXCEPTION_CONTINUE_SEARCH;
        captured += reinterpret_cast<const char*>(record.ExceptionInformation[1]);
        return EXCEPTION_CONTINUE_EXECUTION;
    };
    void* const handler = AddVectoredExceptionHandler(TRUE, capture);
    captured.clear();
    action();
    RemoveVectoredExceptionHandler(handler);
    return captured;
}
#endif

class LoggingTest : public QObject
{
    Q_OBJECT

    const TempFiles m_files;
    inline static QStringList debugMessages;

    bool load(const QString& text, bool allowDebugLevels = true)
    {
        return Common::loadLoggingConfiguration(m_files.put("Logging.ini", text.toUtf8()),
                                                m_files.root(), allowDebugLevels);
    }
    static int levelOf(const QString& name) { return int(getLogger(name)->loggingLevel()); }

    static QString say(const QString& logger)
    {
        return consoleOf([&] { MessageBuilder(Level::Info, logger).stream() << 7; });
    }

private slots:
    void initTestCase()
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
        getLogger("atEnd")->setLoggingLevel(Level::Info);
        getLogger("atEnd")->addDestination(fileDestinationFor(m_files.path("atEnd.log")));
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            debugMessages << text;
        });
    }
    void init() { debugMessages.clear(); }

    void linesAreRightToTheByte()
    {
        const auto console = debugOutputDestination();
        console->setColours(true);
        getLogger("tst_logging")->addDestination(console);
        const QString line = QString::number(__LINE__ + 5);
        QStringList lines =
            consoleOf([] {
                for (const Level threshold : {Level::Trace, Level::Warn, Level::Off}) {
                    getLogger("tst_logging")->setLoggingLevel(threshold);
                    QLOG_TRACE() << "Name:" << QStringLiteral("A\"1\"") << 42 << true << "100%1";
                    QLOG_DEBUG() << "x";
                    QLOG_INFO() << "x";
                    QLOG_WARN() << "x";
                    QLOG_ERROR() << "x";
                    QLOG_FATAL() << "x";
                }
                MessageBuilder(Level::Off, "tst_logging").stream() << "x";
            }).split('\n');
        const QString stamp = lines[0].mid(24, 23);
        QVERIFY(QDateTime::fromString(stamp, "yyyy-MM-ddTHH:mm:ss.zzz").isValid());
        QCOMPARE(lines[0], "\x1b[0;37mTRACE\x1b[0m \x1b[0;37m" + stamp +
                               "\x1b[0m \x1b[1;34mtst_logging.cpp:" + line +
                               "\x1b[0m [operator()] Name: \"A\\\"1\\\"\" 42 true 100%1 ");
        const QString high = "\x1b[1;31mWARN\x1b[0m\x1b[31mERROR\x1b[0m\x1b[31mFATAL\x1b[0m";
        QCOMPARE(lines.replaceInStrings(QRegularExpression(" \x1b\\[0;37m2.*"), "").join(QString()),
                 "\x1b[0;37mTRACE\x1b[0m\x1b[1;33mDEBUG\x1b[0m\x1b[1;30mINFO\x1b[0m" + high + high +
                     QString(5, ' '));
    }

    void aFileHoldsPlainLinesAndOutlivesAFullDisk()
    {
        FileDestination destination(m_files.put("a.log", "before\n"));
        destination.write(QStringLiteral("\x1b[1;30mINFO\x1b[0m \x1b[2J \u6D17"), Level::Info);
        const QByteArray written = "before\nINFO \x1b[2J \xE6\xB4\x97\n";
        QCOMPARE(m_files.get("a.log"), written);
#ifdef Q_OS_LINUX
        surviveClosedDebugOutput();
        QVERIFY(std::signal(SIGPIPE, SIG_IGN) == SIG_IGN);
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &limit), 0);
        const rlimit full{static_cast<rlim_t>(written.size()), limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        destination.write("lost", Level::Info);
        setrlimit(RLIMIT_FSIZE, &limit);
        QCOMPARE(m_files.get("a.log"), written);
        QVERIFY(LogFailures::instance().any());
        destination.write("after", Level::Info);
        QVERIFY(m_files.get("a.log").endsWith("\nafter\n") && !LogFailures::instance().any());
#endif
    }

    void rotatesOnlyPastTheMaximum()
    {
        const QByteArray full = QByteArray(999, 'x') + "\n";
        const int written = QSysInfo::productType() == "windows" ? 1001 : 1000;
        for (const int maximum : {written, 999, 0, -5}) {
            for (const QByteArray& atFirst : {full, QByteArray()}) {
                m_files.put("b.log.old", "old");
                FileDestination destination(m_files.put("b.log", atFirst));
                QVERIFY(destination.setMaxSize(maximum));
                const bool rotates = maximum == 999;
                QCOMPARE(m_files.get("b.log.old"), rotates && !atFirst.isEmpty() ? full : "old");
                if (atFirst.isEmpty())
                    destination.write(QString(999, 'x'), Level::Info);
                destination.write("next", Level::Info);
                QCOMPARE(m_files.get("b.log"), rotates ? QByteArray("next\n") : full + "next\n");
                QCOMPARE(m_files.get("b.log.old"), rotates ? full : "old");
            }
        }
        // Where the file cannot be renamed, the log goes on in it.
        m_files.put("c.log.old/full", "cannot be replaced");
        FileDestination destination(m_files.put("c.log", "before\n"));
        QVERIFY(destination.isValid() && !destination.rotate() && destination.setMaxSize(3));
        destination.write("next", Level::Info);
        QCOMPARE(m_files.get("c.log"), QByteArray("before\nnext\n"));
#ifdef Q_OS_LINUX
        // Without permission for the folder and the file, the open file is all there is.
        FileDestination kept(m_files.put("fixed/d.log", "before\n"));
        QFile::setPermissions(m_files.path("fixed/d.log"), QFile::ReadOwner);
        QFile::setPermissions(m_files.path("fixed"), QFile::Permissions(0x5550));
        setfsuid(getuid() == 0 ? 65534 : getuid()); // root would be let through
        QVERIFY(!kept.rotate());
        setfsuid(getuid());
        kept.write("after", Level::Info);
        QCOMPARE(m_files.get("fixed/d.log"), QByteArray("before\nafter\n"));
        QFile::setPermissions(m_files.path("fixed"), QFile::Permissions(0x7770));
#endif
        // A destination that could not open its file tries again.
        FileDestination late(m_files.path("late/such.log"));
        QVERIFY(!late.isValid() && LogFailures::instance().any());
        m_files.put("late/folder");
        late.write("next", Level::Info);
        QCOMPARE(m_files.get("late/such.log"), QByteArray("next\n"));
    }

    void threadsShareAFileUnderAllItsNames()
    {
        const QString path = m_files.path("shared.log");
        const auto write = [](const QString& name) {
            const auto file = fileDestinationFor(name);
            getLogger(name)->addDestination(file);
            for (int line = 0; line < 1000; ++line) {
                file->setMaxSize(10'000'000 + line);
                file->write("INFO now line " + QString::number(line) + ' ', Level::Info);
            }
        };
        const QString sameName = QDir::current().relativeFilePath(path);
        std::thread others[] = {std::thread(write, sameName), std::thread(write, sameName),
                                std::thread(write, path)};
        write(path);
        for (std::thread& other : others)
            other.join();
        const QStringList lines = QString::fromUtf8(m_files.get("shared.log")).split('\n');
        QCOMPARE(lines.filter(QRegularExpression("^INFO \\S+ line \\d+ $")).size(), 4000);
    }

    void iniTextsAreReadOrRefused()
    {
        // The value of "key" in "[s]".
        const QList<std::pair<QByteArray, const char*>> rows{
            {"\xEF\xBB\xBF[ S ]\r\n  KEY =  a=b;c \r\n", "a=b;c"},
            {"; comment\n # [t\n\nkey=above\n[s]\nkey=", ""},
            {"[s]\nkey=1\n[t]\nkey=2\n[S]\nkey=3\n", "3"},
            {"[s]\nlevel\n", "invalid"},
            {"[s]\n = INFO\n", "invalid"},
            {"[s] ; why\n", "invalid"},
            {"[s]\n\xEF\xBB\xBF[t]\n", "invalid"},
            {QByteArray(IniDocument::maximumSize, '\n'), "absent"},
            {QByteArray(120, '\0'), "invalid"}, // as after a torn write
            {"[s]\nkey=\t\xC2\xA0 \t\r\n", "\xC2\xA0"},
            {QByteArray(IniDocument::maximumSize + 1, '\n'), "invalid"}};
        for (const auto& [text, expected] : rows) {
            const auto document = IniDocument::parse(text);
            const auto* section = document ? document->section("s") : nullptr;
            const QString value = section ? *section->value("key") : "absent";
            QCOMPARE(document ? value : "invalid", QString(expected));
        }
    }

    void levelsAreSetAndHeldBackInARelease()
    {
        QCOMPARE(levelOf("Early"), 6);
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
            QVERIFY(!Common::loadLoggingConfiguration(m_files.path(unreadable), "", true));
        QVERIFY(!load("[default]\nlevel=TRACE\n[DevINFO]\nlevel=TRACE\nnonsense\n"));
        const QList<int> levels{levelOf("default"), levelOf("DevINFO"), levelOf("DevWARN")};
        QCOMPARE(levels, QList<int>({3, 2, 3}));
        QVERIFY(load("[DevINFO]"));
        QCOMPARE(levelOf("AfterNoDefault") + levelOf("Early"), 6 + 6);
    }

    void filesJoinTheDefaultsAndNotTheirOwnSection()
    {
        const QString text = "[default]\nfile=all.log\n[Owner]\nfile=own.log\n[Next]\n";
        QVERIFY(load(text) && load(text));
        for (const char* logger : {"Owner", "Next", "Later"})
            say(logger);
        QCOMPARE(m_files.get("all.log").count('\n'), 3);
        QCOMPARE(m_files.get("own.log").count('\n'), 2);
        m_files.put("sized.log", QByteArray(1000, 'x'));
        for (const char* size : {"10k", "9223372036854775808", "1000", "999"})
            QVERIFY(load(QStringLiteral("[default]\nfile=sized.log\ntruncate=%1").arg(size)));
        QCOMPARE(debugMessages.join('\n').remove('"'),
                 QString("Could not parse truncate size 10k\n"
                         "Could not parse truncate size 9223372036854775808\n"
                         "Truncated log file to 1000\nTruncated log file to 999"));
        QCOMPARE(m_files.get("sized.log.old").size(), 1000);
        // An empty name is the log directory itself: nothing is moved or lost.
        QVERIFY(load("[default]\nfile=\ntruncate=1\n") && QFileInfo(m_files.root()).isDir());
        QVERIFY(load("[default]\nconsole=on\n[Muted]\nconsole=ON\n"));
        QVERIFY(say("Heard").startsWith("INFO 2") && say("Heard").endsWith(" 7 \n"));
        QCOMPARE(say("Muted"), QString());
        QVERIFY(load("[default]\ncolors=on\n[Muted]\nconsole=on\n") && load(""));
        QVERIFY(say("Muted").startsWith("\x1b[1;30mINFO\x1b[0m"));
    }

    void theUsersFileOverridesAndIsWatched()
    {
        const QString user = m_files.put("data/user/Logging.ini", "[User]\nlevel=DEBUG\n");
        const QString shipped = m_files.put("shipped.ini", "[User]\nlevel=TRACE\n[Shipped]\n"
                                                           "level=ERROR\n");
        const QString logs = m_files.path("data/Logs");
        const auto becomes = [&](int level, const char* name, const char* file) {
            const QString path = m_files.put(file, QByteArray("[User]\nlevel=") + name);
            std::filesystem::rename(path.toStdWString(), user.toStdWString());
            return QTest::qWaitFor([&] { return levelOf("User") == level; }, 30'000);
        };
        Common::startLogging({logs, shipped, user}, false);
        QVERIFY(!QCoreApplication::instance()->findChild<Common::SettingsFileWatcher*>());
#ifdef Q_OS_LINUX // elsewhere the folder of the user is closed to others
        QCOMPARE(int(QFile::permissions(logs)) & 0x77, 0);
        QVERIFY(QFile::setPermissions(logs, QFile::Permissions(0x7750)));
        Common::startLogging({logs, shipped, user}, false);
        QCOMPARE(int(QFile::permissions(logs)) & 0x77, 0x50); // as its owner wants it
#endif
        Common::startLogging({logs, shipped, user}, true);
        QCOMPARE(levelOf("User"), 1);
        QCOMPARE(levelOf("Shipped"), 4);
        // It changes, is replaced as editors do it, goes with its directory, and comes again.
        QVERIFY(becomes(3, "WARN", "data/user/Logging.ini"));
        QVERIFY(becomes(4, "ERROR", "data/user/draft"));
        QVERIFY(becomes(5, "FATAL", "data/user/Logging.ini"));
        debugMessages.clear();
        QVERIFY(QDir(m_files.path("data/user")).removeRecursively());
        QTRY_COMPARE_WITH_TIMEOUT(debugMessages.size(), 1, 30'000);
        QVERIFY(becomes(0, "TRACE", "data/user/Logging.ini"));
        Common::startLogging({user + "/below", shipped, user}, false);
        debugMessages.removeDuplicates();
        QCOMPARE(debugMessages.join('\n').remove(m_files.root()).remove('"'),
                 QString("Reload logging configuration from /data/user/Logging.ini\n"
                         "Could not make directory for log files: /data/user/Logging.ini/below\n"
                         "Loading logging configuration from /shipped.ini\n"
                         "Loading logging configuration from /data/user/Logging.ini"));
    }
};

QTEST_GUILESS_MAIN(LoggingTest)
#include "tst_logging.moc"
