// The system stays awake while a firmware download runs. A login manager of the test's own answers
// on a message bus of the test's own, and tells from its end of a pipe when a lock is given back.
#include "support/LogCapture.h"
#include "update/DFUDownloadJob.h"
#include "update/SleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusUnixFileDescriptor>
#include <QSemaphore>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

class LoginManager : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    ~LoginManager() override { forget(); }

    QStringList requests;
    QString refused;

    // Whether all locks were given back: the pipes' other ends are closed.
    bool allReleased() const
    {
        char byte = 0;
        return std::all_of(m_pipes.begin(), m_pipes.end(),
                           [&byte](int pipe) { return read(pipe, &byte, 1) == 0; });
    }

    void forget()
    {
        for (const int pipe : m_pipes)
            close(pipe);
        m_pipes.clear();
        requests.clear();
        refused.clear();
    }

public slots:
    QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why,
                                    const QString& mode)
    {
        requests << what + "|" + who + "|" + mode;
        if (what == refused || why.isEmpty()) {
            sendErrorReply(QDBusError::AccessDenied, "refused");
            return {};
        }
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
            qFatal("no pipe");
        m_pipes.push_back(ends[0]);
        QDBusUnixFileDescriptor lock;
        lock.setFileDescriptor(ends[1]);
        close(ends[1]);
        return lock;
    }

private:
    std::vector<int> m_pipes;
};

class tst_sleepinhibitor : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void heldWhileItLives();
    void aRefusalIsNoError();
    void releasedWhateverTheEnd();
    void withoutLoginManager();

private:
    void onAThread(const std::function<void()>& work);

    LoginManager m_manager;
};

void tst_sleepinhibitor::initTestCase()
{
    QDBusConnection bus = QDBusConnection::systemBus();
    QVERIFY2(bus.isConnected(), "to be run by dbus-run-session with the address for both buses");
    QVERIFY(
        bus.registerObject("/org/freedesktop/login1", &m_manager, QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService("org.freedesktop.login1"));
}

void tst_sleepinhibitor::cleanup()
{
    m_manager.forget();
}

// The service answers on this thread, so the one who asks has to be on another, as the job is.
void tst_sleepinhibitor::onAThread(const std::function<void()>& work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->start();
    QTRY_VERIFY(thread->isFinished());
}

void tst_sleepinhibitor::heldWhileItLives()
{
    QSemaphore taken;
    QSemaphore goOn;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        const AquenSolvar::SleepInhibitor awake("why");
        taken.release();
        goOn.acquire();
    }));
    thread->start();
    QTRY_COMPARE(taken.available(), 1);
    const bool held = !m_manager.allReleased();
    goOn.release();
    QVERIFY(thread->wait(5000));
    QVERIFY(held);
    QTRY_VERIFY(m_manager.allReleased());
    QCOMPARE(m_manager.requests, QStringList({"sleep:idle|Aquen/Solvar Updater|block",
                                              "handle-lid-switch|Aquen/Solvar Updater|block"}));
}

void tst_sleepinhibitor::aRefusalIsNoError()
{
    LogCapture log({"SleepInhibitor_logind"});
    m_manager.refused = "handle-lid-switch";
    onAThread([] { const AquenSolvar::SleepInhibitor awake("why"); });
    QCOMPARE(m_manager.requests.size(), 2);
    QVERIFY(log.contains("INFO", "does not block \"handle-lid-switch\" : \"refused\""));
    QTRY_VERIFY(m_manager.allReleased());
}

void tst_sleepinhibitor::releasedWhateverTheEnd()
{
    AquenSolvar::Device::DFUDownloadJob job(QByteArray(16, 'x'), {}, 1024);
    job.start();
    QTRY_VERIFY(job.isFinished());
    QCOMPARE(m_manager.requests.size(), 2);
    QTRY_VERIFY(m_manager.allReleased());
}

void tst_sleepinhibitor::withoutLoginManager()
{
    LogCapture log({"SleepInhibitor_logind"});
    QVERIFY(QDBusConnection::systemBus().unregisterService("org.freedesktop.login1"));
    onAThread([] { const AquenSolvar::SleepInhibitor awake("why"); });
    QCOMPARE(log.count("INFO"), 2);
    QCOMPARE(log.lines().size(), 2);
}

QTEST_GUILESS_MAIN(tst_sleepinhibitor)
#include "tst_sleepinhibitor.moc"
