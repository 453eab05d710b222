#include "Common/Logging/LoggingConfiguration.h"
#include "qslog/FileDestination.h"
#include "qslog/LoggerRegistry.h"
#include "qslog/MessageBuilder.h"
#include "support/TempFiles.h"

#include <QtTest>

using QsLogging::getLogger;
using QsLogging::Level;

// Levels, destinations and the console are process-wide and only ever add up, so each case here
// uses logger and file names of its own.
class LoggingConfigurationTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_files = std::make_unique<TempFiles>();
        QsLogging::setDefaultLevel(Level::Off);
    }

    void whatCannotBeReadChangesNothing()
    {
        QsLogging::setDefaultLevel(Level::Warn);
        QVERIFY(
            !Common::loadLoggingConfiguration(m_files->path("missing.ini"), m_files->root(), true));
        QVERIFY(!Common::loadLoggingConfiguration(m_files->root(), m_files->root(), true));
        // A regular file that opens and fails to be read, as on a bad disk.
        QVERIFY(!Common::loadLoggingConfiguration("/proc/self/mem", m_files->root(), true));
        QVERIFY(!load("[default]\nlevel=TRACE\n[Unread]\nlevel=TRACE\nnonsense\n"));
        QCOMPARE(getLogger("Unread")->loggingLevel(), Level::Warn);
    }

    void convertsLevels_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("debugAllowed");
        QTest::addColumn<int>("inRelease");
        QTest::newRow("TRACE") << "TRACE" << 0 << 2;
        QTest::newRow("DEBUG") << "DEBUG" << 1 << 2;
        QTest::newRow("INFO") << "INFO" << 2 << 2;
        QTest::newRow("WARN") << "WARN" << 3 << 3;
        QTest::newRow("ERROR") << "ERROR" << 4 << 4;
        QTest::newRow("FATAL") << "FATAL" << 5 << 5;
        QTest::newRow("OFF") << "OFF" << 6 << 6;
        QTest::newRow("lower case") << "Info" << 6 << 6;
        QTest::newRow("empty") << "" << 6 << 6;
    }
    void convertsLevels()
    {
        QFETCH(QString, text);
        QFETCH(int, debugAllowed);
        QFETCH(int, inRelease);
        const QString name = "Converts" + QString(QTest::currentDataTag()).remove(' ');
        const QString defaults = "[default]\nlevel=" + text + "\n";
        for (const bool allow : {true, false}) {
            const QString suffix = allow ? "Dev" : "Rel";
            QVERIFY(load(defaults + "[" + name + suffix + "]\nlevel=" + text, allow));
            QCOMPARE(int(getLogger(name + suffix)->loggingLevel()),
                     allow ? debugAllowed : inRelease);
            // The default level is never held back.
            QCOMPARE(int(getLogger(name + suffix + "New")->loggingLevel()), debugAllowed);
        }
    }

    void aFileWithoutDefaultsTurnsTheDefaultOff()
    {
        QsLogging::setDefaultLevel(Level::Trace);
        QVERIFY(load("[HasLevel]\nlevel=WARN\n[HasNone]\n"));
        QCOMPARE(getLogger("HasLevel")->loggingLevel(), Level::Warn);
        QCOMPARE(getLogger("HasNone")->loggingLevel(), Level::Off);
        QCOMPARE(getLogger("MadeLater")->loggingLevel(), Level::Off);
        // Without a level of its own a logger keeps the one that it has.
        QVERIFY(load("[default]\nlevel=INFO\n[HasLevel]\nconsole=off\n"));
        QCOMPARE(getLogger("HasLevel")->loggingLevel(), Level::Warn);
    }

    void sectionNamesAreLoggerNamesToTheLetter()
    {
        QVERIFY(load("[slog]\nlevel=INFO\n"));
        QCOMPARE(getLogger("slog")->loggingLevel(), Level::Info);
        QCOMPARE(getLogger("SLog")->loggingLevel(), Level::Off);
        // "Default" is the default section and a logger as well, which a release holds at Info.
        QVERIFY(load("[Default]\nLEVEL=DEBUG\n", false));
        QCOMPARE(getLogger("Default")->loggingLevel(), Level::Info);
        QCOMPARE(getLogger("AfterDefault")->loggingLevel(), Level::Debug);
        // The plain spelling is no logger: one made now has the level of now.
        QVERIFY(load("[default]\nlevel=WARN\n"));
        QVERIFY(load("[default]\nlevel=ERROR\n"));
        QCOMPARE(getLogger("default")->loggingLevel(), Level::Error);
    }

    void filesJoinTheDefaultsAndNotTheirOwnSection()
    {
        const QString elsewhere = m_files->path("sub/absolute.log");
        QVERIFY(QDir().mkpath(m_files->path("sub")));
        QVERIFY(load("[default]\nlevel=INFO\nfile=all.log\n"
                     "[FileOwner]\nfile=" +
                     elsewhere +
                     "\n"
                     "[FileLater]\n"));
        for (const char* name : {"FileOwner", "FileLater", "FileAfterwards"})
            say(name);
        QCOMPARE(speakers("all.log"), QStringList({"FileOwner", "FileLater", "FileAfterwards"}));
        QCOMPARE(speakers("sub/absolute.log"), QStringList({"FileLater", "FileAfterwards"}));
    }

    void loadsAddUpAndALineIsWrittenOnce()
    {
        const QString text = "[default]\nlevel=INFO\nfile=cumulative.log\nconsole=on\n";
        QVERIFY(load(text));
        say("CumulativeBefore");
        QVERIFY(load(text));
        say("CumulativeAfter");
        QVERIFY(load("[CumulativeBefore]\nlevel=ERROR\n"));
        QCOMPARE(speakers("cumulative.log"), QStringList({"CumulativeBefore", "CumulativeAfter"}));
        QCOMPARE(getLogger("CumulativeBefore")->loggingLevel(), Level::Error);
    }

    void truncateSetsTheSize_data()
    {
        QTest::addColumn<QString>("size");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("rotated");
        QTest::newRow("10k") << "10k"
                             << "Could not parse truncate size \"10k\"" << false;
        QTest::newRow("empty") << ""
                               << "Could not parse truncate size \"\"" << false;
        QTest::newRow("beyond 64 bits")
            << "9223372036854775808"
            << "Could not parse truncate size \"9223372036854775808\"" << false;
        QTest::newRow("0") << "0"
                           << "Truncated log file to 0" << false;
        QTest::newRow("-5") << "-5"
                            << "Truncated log file to -5" << false;
        QTest::newRow("the file's size") << "1000"
                                         << "Truncated log file to 1000" << false;
        QTest::newRow("one less") << "999"
                                  << "Truncated log file to 999" << true;
    }
    void truncateSetsTheSize()
    {
        QFETCH(QString, size);
        QFETCH(QString, message);
        QFETCH(bool, rotated);
        m_files->put("sized.log", QByteArray(1000, 'x'));
        QTest::ignoreMessage(QtDebugMsg, qPrintable(message));
        QVERIFY(load("[default]\nfile=sized.log\ntruncate=" + size));
        QCOMPARE(QFileInfo(m_files->path("sized.log.old")).size(), qint64(rotated ? 1000 : 0));
        QCOMPARE(QFileInfo(m_files->path("sized.log")).size(), qint64(rotated ? 0 : 1000));
    }

    void zeroLiftsALimitAndNonsenseLeavesIt()
    {
        QTest::ignoreMessage(QtDebugMsg, "Truncated log file to 10");
        QVERIFY(load("[default]\nlevel=INFO\nfile=limit.log\ntruncate=10\n"));
        QTest::ignoreMessage(QtDebugMsg, "Could not parse truncate size \"ten\"");
        QVERIFY(load("[default]\nlevel=INFO\nfile=limit.log\ntruncate=ten\n"));
        say("LimitKept");
        say("LimitKept");
        QVERIFY(QFile::remove(m_files->path("limit.log.old")));
        QTest::ignoreMessage(QtDebugMsg, "Truncated log file to 0");
        QVERIFY(load("[default]\nfile=limit.log\ntruncate=0\n"));
        say("LimitKept");
        QVERIFY(!QFile::exists(m_files->path("limit.log.old")));
    }

    // An empty name is the log directory itself: nothing may be written, moved or lost.
    void aDirectoryIsNoLogFile()
    {
        m_files->put("keep.log", "kept");
        QTest::ignoreMessage(QtDebugMsg, "Truncated log file to 1");
        QVERIFY(load("[default]\nlevel=INFO\nfile=\ntruncate=1\n"));
        say("IntoADirectory");
        QVERIFY(QFile::exists(m_files->path("keep.log")));
        QVERIFY(!QFile::exists(m_files->root() + ".old"));
    }

private:
    bool load(const QString& text, bool allowDebugLevels = true)
    {
        m_files->put("Logging.ini", text.toUtf8());
        return Common::loadLoggingConfiguration(m_files->path("Logging.ini"), m_files->root(),
                                                allowDebugLevels);
    }

    static void say(const QString& loggerName)
    {
        if (getLogger(loggerName)->admits(Level::Info))
            QsLogging::MessageBuilder(Level::Info, loggerName).stream() << qPrintable(loggerName);
    }

    // The last word of each line.
    QStringList speakers(const QString& name) const
    {
        QStringList words;
        for (const QString& line : QString::fromUtf8(m_files->get(name)).split('\n'))
            words.append(line.trimmed().section(' ', -1));
        words.removeAll(QString());
        return words;
    }

    std::unique_ptr<TempFiles> m_files;
};

QTEST_GUILESS_MAIN(LoggingConfigurationTest)
#include "tst_loggingconfiguration.moc"
