#include "qslog/DebugOutputDestination.h"
#include "qslog/FileDestination.h"
#include "qslog/Log.h"
#include "support/TempFiles.h"

#include <QtTest>

#include <csignal>
#include <sys/resource.h>
#include <thread>

using namespace QsLogging;

// Keeps lines as they come, colours and timestamp included.
struct RawDestination : Destination
{
    void write(const QString& message, Level) override { lines.append(message); }
    bool isValid() override { return true; }
    QStringList lines;
};

class LoggerTest : public QObject
{
    Q_OBJECT

    const TempFiles m_files;
    std::shared_ptr<RawDestination> m_raw = std::make_shared<RawDestination>();
    P_Logger m_logger = getLogger("tst_logger");

private slots:
    void initTestCase() { m_logger->addDestination(m_raw); }
    void cleanup() { m_raw->lines.clear(); }

    void linesAreRightToTheByte()
    {
        for (const Level threshold : {Level::Trace, Level::Warn, Level::Off}) {
            m_logger->setLoggingLevel(threshold);
            QLOG_TRACE() << "x";
            QLOG_DEBUG() << "x";
            QLOG_INFO() << "x";
            QLOG_WARN() << "x";
            QLOG_ERROR() << "x";
            QLOG_FATAL() << "x";
        }
        MessageBuilder(Level::Off, "tst_logger").stream() << "x";
        QString starts;
        for (const QString& line : m_raw->lines)
            starts += line.left(line.indexOf(" \x1b[0;37m2"));
        const QString high = "\x1b[1;31mWARN\x1b[0m\x1b[31mERROR\x1b[0m\x1b[31mFATAL\x1b[0m";
        QCOMPARE(starts, "\x1b[0;37mTRACE\x1b[0m\x1b[1;33mDEBUG\x1b[0m\x1b[1;30mINFO\x1b[0m" +
                             high + high + QString(5, ' '));

        m_logger->setLoggingLevel(Level::Trace);
        QLOG_WARN() << "Name:" << QStringLiteral("A\"1\"") << 42 << true << "100%1";
        const QString line = QString::number(__LINE__ - 1);
        const QString stamp = m_raw->lines.last().mid(23, 23);
        QVERIFY(QDateTime::fromString(stamp, "yyyy-MM-ddTHH:mm:ss.zzz").isValid());
        QCOMPARE(m_raw->lines.last(), "\x1b[1;31mWARN\x1b[0m \x1b[0;37m" + stamp +
                                          "\x1b[0m \x1b[1;34mtst_logger.cpp:" + line +
                                          "\x1b[0m [linesAreRightToTheByte] Name: \"A\\\"1\\\"\" "
                                          "42 true 100%1 ");
    }

    void aLoggerKeepsTheDefaultsOfItsCreation()
    {
        const auto early = getLogger("Early");
        setDefaultLevel(Level::Info);
        for (int twice = 0; twice < 2; ++twice)
            addDefaultDestination(m_raw);
        QCOMPARE(getLogger("Early")->loggingLevel(), Level::Off);
        early->dispatch("nowhere", Level::Fatal);
        QCOMPARE(getLogger("early")->loggingLevel(), Level::Info);
        getLogger("early")->dispatch("once", Level::Fatal);
        QCOMPARE(m_raw->lines, QStringList("once"));
        QCOMPARE(loggerNameOf("a.b/SLog.d.cpp"), QStringLiteral("SLog"));
        surviveClosedDebugOutput();
        QVERIFY(std::signal(SIGPIPE, SIG_IGN) == SIG_IGN);
    }

    void aFileHoldsPlainLinesAndOutlivesAFullDisk()
    {
        FileDestination destination(m_files.put("a.log", "before\n"));
        destination.write(QStringLiteral("\x1b[1;30mINFO\x1b[0m \x1b[2J \u6D17"), Level::Info);
        const QByteArray written = "before\nINFO \x1b[2J \xE6\xB4\x97\n";
        QCOMPARE(m_files.get("a.log"), written);
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &limit), 0);
        const rlimit full{static_cast<rlim_t>(written.size()), limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        destination.write("lost", Level::Info);
        setrlimit(RLIMIT_FSIZE, &limit);
        QCOMPARE(m_files.get("a.log"), written);
        destination.write("after", Level::Info);
        QVERIFY(m_files.get("a.log").endsWith("\nafter\n"));
    }

    void rotatesOnlyPastTheMaximum()
    {
        const QByteArray full = QByteArray(999, 'x') + "\n";
        for (const int maximum : {1000, 999, 0, -5}) {
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
        destination.write("after", Level::Info);
        QCOMPARE(m_files.get("c.log"), QByteArray("before\nafter\n"));
        QVERIFY(!FileDestination(m_files.path("no/such.log")).isValid());
    }

    void threadsShareAFileUnderAllItsNames()
    {
        const QString path = m_files.path("shared.log");
        const QString relative = QDir::current().relativeFilePath(path);
        const auto write = [](const QString& name) {
            getLogger(name)->addDestination(fileDestinationFor(name));
            for (int line = 0; line < 400; ++line) {
                fileDestinationFor(name)->setMaxSize(1'000'000 + line);
                MessageBuilder(Level::Info, name).stream() << "line" << line;
            }
        };
        std::thread other(write, relative);
        write(path);
        other.join();
        QCOMPARE(fileDestinationFor(path), fileDestinationFor(relative));
        const QStringList lines = QString::fromUtf8(m_files.get("shared.log")).split('\n');
        QCOMPARE(lines.filter(QRegularExpression("^INFO \\S+ line \\d+ $")).size(), 800);
    }
};

QTEST_APPLESS_MAIN(LoggerTest)
#include "tst_logger.moc"
