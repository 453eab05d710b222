#include "qslog/FileDestination.h"
#include "qslog/Log.h"
#include "qslog/LoggerRegistry.h"

#include <QtTest>

#include <thread>
#include <vector>

using QsLogging::getLogger;
using QsLogging::Level;

class LoggingThreadsTest : public QObject
{
    Q_OBJECT

private slots:
    // Several loggers share one file that another thread keeps rotating. Lines stay whole, and
    // those of one thread stay in order in what is left.
    void linesStayWholeWhileTheFileRotates()
    {
        constexpr int writers = 4;
        constexpr int linesEach = 400;
        const QString path = m_dir.filePath("shared.log");
        const auto file = QsLogging::fileDestinationFor(path);
        QVERIFY(file->setMaxSize(50000));

        std::vector<std::thread> threads;
        for (int writer = 0; writer < writers; ++writer) {
            threads.emplace_back([writer, file] {
                const QString name = QStringLiteral("Writer%1").arg(writer);
                const auto logger = getLogger(name);
                logger->setLoggingLevel(Level::Info);
                logger->addDestination(file);
                for (int line = 0; line < linesEach; ++line)
                    QsLogging::MessageBuilder(Level::Info, name).stream()
                        << "from" << writer << "line" << line << "end";
            });
        }
        threads.emplace_back([file] {
            for (int i = 0; i < 20; ++i) {
                file->setMaxSize(i % 2 == 0 ? 20000 : 50000);
                getLogger(QStringLiteral("New%1").arg(i))->setLoggingLevel(Level::Info);
                std::this_thread::yield();
            }
        });
        for (std::thread& thread : threads)
            thread.join();

        int last[writers] = {-1, -1, -1, -1};
        int seen = 0;
        const QRegularExpression whole("^INFO \\S+ from (\\d) line (\\d+) end $");
        for (const QString& line : linesOf(path + ".old") + linesOf(path)) {
            const QRegularExpressionMatch match = whole.match(line);
            QVERIFY2(match.hasMatch(), qPrintable(line));
            const int number = match.captured(2).toInt();
            QVERIFY(number > last[match.captured(1).toInt()]);
            last[match.captured(1).toInt()] = number;
            ++seen;
        }
        QVERIFY(QFile::exists(path + ".old"));
        QVERIFY(seen > 0);
        for (const int number : last)
            QVERIFY(number <= linesEach - 1);
        // The very last line of all is never among what a rotation dropped.
        QVERIFY(*std::max_element(last, last + writers) == linesEach - 1);
    }

    void nothingIsLostWithoutALimit()
    {
        const QString path = m_dir.filePath("complete.log");
        const auto file = QsLogging::fileDestinationFor(path);
        const auto logger = getLogger("tst_loggingthreads");
        logger->setLoggingLevel(Level::Info);
        logger->addDestination(file);
        std::vector<std::thread> threads;
        for (int writer = 0; writer < 4; ++writer) {
            threads.emplace_back([] {
                for (int line = 0; line < 250; ++line)
                    QLOG_INFO() << "line" << line;
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(linesOf(path).size(), 1000);
    }

private:
    static QStringList linesOf(const QString& path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return {"unreadable " + path};
        QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
        lines.removeLast();
        return lines;
    }

    QTemporaryDir m_dir;
};

QTEST_APPLESS_MAIN(LoggingThreadsTest)
#include "tst_loggingthreads.moc"
