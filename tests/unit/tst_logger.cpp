
#include "qslog/DebugOutputDestination.h"
#include "qslog/Log.h"
#include "qslog/LoggerRegistry.h"
#include "support/LogCapture.h"

#include <QtTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using QsLogging::getLogger;
using QsLogging::Level;

namespace {

// Keeps lines as they come, colours and timestamp included.
class RawDestination : public QsLogging::Destination
{
public:
    void write(const QString& message, Level level) override
    {
        lines.append(message);
        levels.append(level);
    }
    bool isValid() override { return true; }

    QStringList lines;
    QVector<Level> levels;
};

void logEveryLevel()
{
    QLOG_TRACE() << "0";
    QLOG_DEBUG() << "1";
    QLOG_INFO() << "2";
    QLOG_WARN() << "3";
    QLOG_ERROR() << "4";
    QLOG_FATAL() << "5";
}

} // namespace

class LoggerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_destination = std::make_shared<RawDestination>();
        m_logger = getLogger("tst_logger");
        m_logger->setLoggingLevel(Level::Trace);
        m_logger->addDestination(m_destination);
    }
    void cleanup() { m_logger->removeDestination(m_destination); }

    void aLevelAdmitsItselfAndAbove_data()
    {
        QTest::addColumn<int>("level");
        for (int level = 0; level <= 6; ++level)
            QTest::addRow("level %d", level) << level;
    }
    void aLevelAdmitsItselfAndAbove()
    {
        QFETCH(int, level);
        m_logger->setLoggingLevel(static_cast<Level>(level));
        logEveryLevel();
        QCOMPARE(m_destination->lines.size(), 6 - level);
        for (int i = 0; i < m_destination->lines.size(); ++i)
            QVERIFY(m_destination->lines.at(i).endsWith(QStringLiteral(" %1 ").arg(level + i)));
    }

    void aLineIsWhatItShouldBeToTheByte()
    {
        const QDateTime before = QDateTime::currentDateTime();
        const int line = __LINE__ + 1;
        QLOG_WARN() << "Serial name:" << QStringLiteral("A\"1\"") << 42 << true << "100%1";
        const QString written = m_destination->lines.value(0);
        const QRegularExpressionMatch stamp =
            QRegularExpression("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}").match(written);
        QVERIFY(stamp.hasMatch());
        QCOMPARE(written,
                 "\x1b[1;31mWARN\x1b[0m \x1b[0;37m" + stamp.captured() +
                     "\x1b[0m \x1b[1;34mtst_logger.cpp:" + QString::number(line) +
                     "\x1b[0m [aLineIsWhatItShouldBeToTheByte] Serial name: \"A\\\"1\\\"\" 42 true "
                     "100%1 ");
        const QDateTime at = QDateTime::fromString(stamp.captured(), Qt::ISODateWithMs);
        QVERIFY(qAbs(before.msecsTo(at)) < 5000);
    }

    void levelTextsAndPadding_data()
    {
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("start");
        QTest::newRow("trace") << 0 << "\x1b[0;37mTRACE\x1b[0m \x1b[0;37m2";
        QTest::newRow("debug") << 1 << "\x1b[1;33mDEBUG\x1b[0m \x1b[0;37m2";
        QTest::newRow("info") << 2 << "\x1b[1;30mINFO\x1b[0m \x1b[0;37m2";
        QTest::newRow("warn") << 3 << "\x1b[1;31mWARN\x1b[0m \x1b[0;37m2";
        QTest::newRow("error") << 4 << "\x1b[31mERROR\x1b[0m \x1b[0;37m2";
        QTest::newRow("fatal") << 5 << "\x1b[31mFATAL\x1b[0m \x1b[0;37m2";
        QTest::newRow("off") << 6 << "      \x1b[0;37m2";
        QTest::newRow("below") << -1 << "\x1b[1;30mINFO\x1b[0m \x1b[0;37m2";
        QTest::newRow("above") << 7 << "\x1b[1;30mINFO\x1b[0m \x1b[0;37m2";
    }
    void levelTextsAndPadding()
    {
        QFETCH(int, level);
        QFETCH(QString, start);
        QsLogging::MessageBuilder(static_cast<Level>(level), "tst_logger").stream() << "x";
        QVERIFY2(m_destination->lines.value(0).startsWith(start),
                 qPrintable(m_destination->lines.value(0)));
        QCOMPARE(m_destination->levels.value(0), static_cast<Level>(level));
    }

    void aLambdaIsNamedAsTheCompilerNamesIt()
    {
        [] {
            QLOG_INFO() << "inside";
        }();
        QVERIFY(m_destination->lines.value(0).contains("[operator()] inside ") ||
                m_destination->lines.value(0).contains("[operator ()] inside "));
    }

    void aSuppressedCallEvaluatesNothing()
    {
        m_logger->setLoggingLevel(Level::Warn);
        int evaluated = 0;
        QLOG_INFO() << ++evaluated;
        // The call is one statement: an else after it belongs to the if before it.
        if (evaluated == 1)
            QLOG_WARN() << "wrong branch";
        else
            QLOG_WARN() << "right branch" << ++evaluated;
        QCOMPARE(evaluated, 1);
        QCOMPARE(m_destination->lines.size(), 1);
        QVERIFY(m_destination->lines.at(0).contains("right branch"));
    }

    void namesAreFileNamesWithoutAnyExtension()
    {
        QCOMPARE(QsLogging::loggerNameOf("lib/Common/src/Logging/SLog.cpp"),
                 QStringLiteral("SLog"));
        QCOMPARE(QsLogging::loggerNameOf("a.b/c.d.cpp"), QStringLiteral("c"));
        QVERIFY(getLogger("slog") != getLogger("SLog"));
        QCOMPARE(getLogger("SLog"), getLogger("SLog"));
    }

    void aLoggerKeepsWhatItWasMadeWith()
    {
        const auto early = getLogger("Early");
        QCOMPARE(early->loggingLevel(), Level::Off);
        const auto destination = std::make_shared<RawDestination>();
        QsLogging::setDefaultLevel(Level::Info);
        QsLogging::addDefaultDestination(destination);
        QsLogging::addDefaultDestination(destination);
        QCOMPARE(getLogger("Early")->loggingLevel(), Level::Off);
        early->dispatch("early", Level::Fatal);
        QCOMPARE(getLogger("Late")->loggingLevel(), Level::Info);
        getLogger("Late")->dispatch("late", Level::Fatal);
        // Twice among the defaults, once in the logger.
        QCOMPARE(destination->lines, QStringList("late"));
        QsLogging::setDefaultLevel(Level::Off);
    }

    void destinationsAreHeldOnceAndInOrder()
    {
        QsLogging::Logger logger;
        const auto first = std::make_shared<RawDestination>();
        const auto second = std::make_shared<RawDestination>();
        logger.removeDestination(first);
        logger.addDestination(first);
        logger.addDestination(second);
        logger.addDestination(first);
        logger.dispatch("one", Level::Info);
        logger.removeDestination(first);
        logger.dispatch("two", Level::Info);
        QCOMPARE(first->lines, QStringList("one"));
        QCOMPARE(second->lines, QStringList({"one", "two"}));
        QVERIFY(first->rotate());
        QVERIFY(QsLogging::debugOutputDestination()->isValid());
        QVERIFY(QsLogging::debugOutputDestination() != QsLogging::debugOutputDestination());
    }

    void aConsoleThatNobodyReadsDoesNotEndTheProcess()
    {
        const pid_t child = fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            int ends[2];
            if (pipe(ends) != 0 || close(ends[0]) != 0 || dup2(ends[1], STDERR_FILENO) < 0)
                _exit(1);
            std::signal(SIGPIPE, SIG_DFL);
            QsLogging::surviveClosedDebugOutput();
            QsLogging::debugOutputDestination()->write("to nobody", Level::Info);
            _exit(0);
        }
        int status = -1;
        QCOMPARE(waitpid(child, &status, 0), child);
        QCOMPARE(status, 0);
    }

private:
    std::shared_ptr<RawDestination> m_destination;
    QsLogging::P_Logger m_logger;
};

QTEST_APPLESS_MAIN(LoggerTest)
#include "tst_logger.moc"
