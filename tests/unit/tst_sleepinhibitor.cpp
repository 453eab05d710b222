// SPDX-License-Identifier: LicenseRef-Proprietary
// A firmware download keeps the system awake, without waiting for a login manager. The one in this
// program responds on a private message bus, from the event loop of the test.
#include "update/DFUDownloadJob.h"
#include "update/SleepInhibitor.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QTest>

class tst_sleepinhibitor : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    Q_SCRIPTABLE QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who,
                                                 const QString& why, const QString& mode)
    {
        m_requests << QStringList{what, who, why, mode}.join('|');
        if (what != "handle-lid-switch")
            return QDBusUnixFileDescriptor(m_lock.handle());
        sendErrorReply(QDBusError::AccessDenied, "refused");
        return {};
    }

private slots:
    void heldWhileAJobRuns();

private:
    // Open descriptors of the lock file. This process both gives and receives them.
    int locksHeld() const
    {
        int held = -1; // the test's own
        for (const QFileInfo& file : QDir("/proc/self/fd").entryInfoList(QDir::Files))
            held += file.symLinkTarget() == m_lock.fileName() ? 1 : 0;
        return held;
    }

    QFile m_lock{QCoreApplication::applicationFilePath()};
    QStringList m_requests;
};

void tst_sleepinhibitor::heldWhileAJobRuns()
{
    QVERIFY(m_lock.open(QIODevice::ReadOnly));
    // Another connection than the job's: calls within one are direct.
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SystemBus, "login manager");
    QVERIFY(bus.registerObject("/org/freedesktop/login1", this,
                               QDBusConnection::ExportScriptableInvokables));
    QVERIFY(bus.registerService("org.freedesktop.login1"));
    AquenSolvar::Device::DFUDownloadJob job(QByteArray(16, 'x'), {}, 1024);
    int held = 0;
    const auto lookUntilHeld = [&] {
        QDeadlineTimer limit(30'000);
        while (locksHeld() == 0 && !limit.hasExpired())
            QThread::msleep(5);
        QThread::msleep(100); // and it stays
        held = locksHeld();
    };
    connect(&job, &AquenSolvar::Device::DFUDownloadJob::uploadError, &job, lookUntilHeld,
            Qt::DirectConnection);
    job.start();
    QTRY_VERIFY_WITH_TIMEOUT(job.isFinished(), 60'000);
    QVERIFY(held > 0);
    const QString rest = "|Aquen/Solvar Updater|A unit's firmware is being updated.|block";
    QTRY_COMPARE(m_requests, QStringList({"sleep:idle" + rest, "handle-lid-switch" + rest}));
    QTRY_COMPARE(locksHeld(), 0);
    auto awake = std::make_unique<AquenSolvar::SleepInhibitor>("why");
    QTRY_VERIFY(locksHeld() > 0);
    awake.reset();
    QTRY_COMPARE(locksHeld(), 0);
}

QTEST_GUILESS_MAIN(tst_sleepinhibitor)
#include "tst_sleepinhibitor.moc"
