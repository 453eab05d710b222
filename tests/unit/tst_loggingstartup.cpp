#include "Common/Logging/LoggingStartup.h"
#include "qslog/LoggerRegistry.h"
#include "qslog/MessageBuilder.h"
#include "support/TempFiles.h"

#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using QsLogging::getLogger;
using QsLogging::Level;

namespace {

QStringList debugMessages;

void collectMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg)
        debugMessages.append(text);
    else
        fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

class LoggingStartupTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_temp = std::make_unique<TempFiles>();
        m_files = {path("data/Logs"), path("shipped/Logging.ini"), path("data/user/Logging.ini")};
        debugMessages.clear();
        m_previous = qInstallMessageHandler(collectMessage);
    }
    void cleanup() { qInstallMessageHandler(m_previous); }

    void standardPlacesAreTheProgramsOwn()
    {
        const Common::LoggingFiles standard = Common::LoggingFiles::standard();
        QVERIFY(standard.logDirectory.endsWith("/Logs"));
        QVERIFY(standard.applicationIniPath.endsWith("/Resources/Settings/Logging.ini"));
        QVERIFY(standard.userIniPath.endsWith("/Settings/Logging.ini"));
        QVERIFY(standard.userIniPath != standard.applicationIniPath);
    }

    void withoutAnyFileNothingIsLogged()
    {
        Common::startLogging(m_files, false);
        QCOMPARE(debugMessages, loadMessages());
        QCOMPARE(getLogger("NoIni")->loggingLevel(), Level::Off);
        QVERIFY(QFileInfo(m_files.logDirectory).isDir());
        QVERIFY(QDir(m_files.logDirectory).isEmpty());
    }

    void theLogDirectoryIsItsOwnersAlone()
    {
        QVERIFY(QDir().mkpath(m_files.logDirectory));
        QVERIFY(QFile::setPermissions(m_files.logDirectory, QFile::Permissions(0x7777)));
        Common::startLogging(m_files, false);
        struct stat facts;
        QCOMPARE(stat(qPrintable(m_files.logDirectory), &facts), 0);
        QCOMPARE(facts.st_mode & 0777U, 0700U);
    }

    void theUsersFileOverridesTheShippedOne()
    {
        write(m_files.applicationIniPath, "[Both]\nlevel=ERROR\n[Shipped]\nlevel=ERROR\n");
        write(m_files.userIniPath, "[Both]\nlevel=WARN\n");
        Common::startLogging(m_files, false);
        QCOMPARE(getLogger("Both")->loggingLevel(), Level::Warn);
        QCOMPARE(getLogger("Shipped")->loggingLevel(), Level::Error);
    }

    void aLogDirectoryThatCannotBeMadeIsTold()
    {
        write(path("data"), "a file where a directory should be");
        Common::startLogging(m_files, false);
        QCOMPARE(debugMessages.value(0),
                 "Could not make directory for log files: \"" + m_files.logDirectory + "\"");
        QCOMPARE(debugMessages.mid(1), loadMessages());
    }

    void aReleaseDoesNotWatch()
    {
        write(m_files.userIniPath, "[Unwatched]\nlevel=WARN\n");
        Common::startLogging(m_files, false);
        write(m_files.userIniPath, "[Unwatched]\nlevel=ERROR\n");
        QTest::qWait(300);
        QCOMPARE(debugMessages, loadMessages());
        QCOMPARE(getLogger("Unwatched")->loggingLevel(), Level::Warn);
    }

    // The file comes, changes, is replaced the way editors do it, goes, and comes again, and with
    // it its whole directory.
    void theWatchSurvivesWhateverHappensToTheFile()
    {
        Common::startLogging(m_files, true);
        const QString neighbour = path("data/user/other.txt");
        const QString draft = path("data/user/draft");

        write(m_files.userIniPath, level("INFO"));
        QTRY_COMPARE(getLogger("Watched")->loggingLevel(), Level::Info);
        write(m_files.userIniPath, level("WARN"));
        QTRY_COMPARE(getLogger("Watched")->loggingLevel(), Level::Warn);

        settle();
        debugMessages.clear();
        write(draft, level("ERROR"));
        QCOMPARE(rename(qPrintable(draft), qPrintable(m_files.userIniPath)), 0);
        QTRY_COMPARE(getLogger("Watched")->loggingLevel(), Level::Error);
        settle();
        QCOMPARE(debugMessages, QStringList(reloadMessage()));

        write(m_files.userIniPath, level("FATAL"));
        QTRY_COMPARE(getLogger("Watched")->loggingLevel(), Level::Fatal);

        settle();
        debugMessages.clear();
        write(neighbour, "nothing to do with it");
        settle();
        QCOMPARE(debugMessages, QStringList());

        QVERIFY(QDir(path("data/user")).removeRecursively());
        settle();
        write(m_files.userIniPath, level("TRACE"));
        QTRY_COMPARE(getLogger("Watched")->loggingLevel(), Level::Trace);
    }

    // What reaches standard error, with and without colours, and the console of a single logger.
    void theConsoleFollowsTheFile()
    {
        write(m_files.applicationIniPath, "[default]\nlevel=INFO\nconsole=on\n[Muted]\n"
                                          "level=INFO\nconsole=OFF\n");
        Common::startLogging(m_files, false);
        QVERIFY(spoken("Heard").endsWith(" Heard \n"));
        QVERIFY(!spoken("Heard").contains('\x1b'));
        QCOMPARE(spoken("Muted"), QByteArray());

        write(m_files.applicationIniPath,
              "[default]\nlevel=INFO\ncolors=on\n[Muted]\nconsole=on\n");
        Common::startLogging(m_files, false);
        QVERIFY(spoken("Muted").contains("\x1b[1;30mINFO\x1b[0m"));
        write(m_files.applicationIniPath, "[default]\ncolors=off\n[Heard]\nconsole=On\n");
        Common::startLogging(m_files, false);
        QVERIFY(spoken("Muted").contains('\x1b'));
        QCOMPARE(spoken("Heard"), QByteArray());
    }

private:
    QString path(const QString& name) const { return m_temp->path(name); }

    static QString level(const QString& name) { return "[Watched]\nlevel=" + name + "\n"; }

    QStringList loadMessages() const
    {
        return {"Loading logging configuration from \"" + m_files.applicationIniPath + "\"",
                "Loading logging configuration from \"" + m_files.userIniPath + "\""};
    }

    QString reloadMessage() const
    {
        return "Reload logging configuration from \"" + m_files.userIniPath + "\"";
    }

    void write(const QString& path, const QString& text) { m_temp->put(path, text.toUtf8()); }

    // Lets pending notifications arrive.
    static void settle()
    {
        int seen = 0;
        do {
            seen = debugMessages.size();
            QTest::qWait(150);
        } while (seen != debugMessages.size());
    }

    QByteArray spoken(const QString& loggerName)
    {
        QFile capture(path("stderr.txt"));
        if (!capture.open(QIODevice::ReadWrite | QIODevice::Truncate))
            return "cannot capture";
        fflush(stderr);
        const int kept = dup(STDERR_FILENO);
        dup2(capture.handle(), STDERR_FILENO);
        if (getLogger(loggerName)->admits(Level::Info))
            QsLogging::MessageBuilder(Level::Info, loggerName).stream() << qPrintable(loggerName);
        fflush(stderr);
        dup2(kept, STDERR_FILENO);
        close(kept);
        QFile result(path("stderr.txt"));
        return result.open(QIODevice::ReadOnly) ? result.readAll() : QByteArray("cannot read");
    }

    std::unique_ptr<TempFiles> m_temp;
    Common::LoggingFiles m_files;
    QtMessageHandler m_previous = nullptr;
};

QTEST_GUILESS_MAIN(LoggingStartupTest)
#include "tst_loggingstartup.moc"
