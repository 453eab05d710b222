// How a download ends that is stopped, kept waiting, or left without an owner, over the real
// libusb.
#include "DownloadJobFixture.h"
#include "support/LogCapture.h"
#include "unit/FirmwareImage.h"
#include "update/DetachedJob.h"

#include <QPointer>
#include <QTest>

using namespace AquenSolvar::Device;
using namespace VirtualUnit;
using Action = Fault::Action;

class tst_downloadend : public DownloadJobFixture
{
    Q_OBJECT

private slots:
    void stopInTheLoop();
    void stopBeforeAChunkIsSent();
    void stopAtTheEnd();
    void stopWhileBusyWithAChunk();
    void stopOfASilentUnit();
    void longWaitsAreLogged();
    void jobWithoutOwnerGoesOn();
    void jobWithoutOwnerEndsWithTheProgram();
};

void tst_downloadend::stopInTheLoop()
{
    const P_Unit unit = m_bus->plugBootloader();
    LogCapture log({"DFUDownloadJob"});
    const auto job = makeJob(QByteArray(100000, 'x'), open(unit));
    JobRecorder heard(*job);
    // Between two chunks: while a chunk is being written, a stop ends as a bad state.
    connect(
        job.data(), &DFUDownloadJob::uploadProgress, job.data(), [&] { job->requestStop(); },
        Qt::DirectConnection);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    job->stop();
    QCOMPARE(heard.progress.size(), 1);
    QCOMPARE(heard.finished, 0);
    QCOMPARE(heard.errors, QStringList());
    QVERIFY(log.contains("INFO", "File successfully downloaded."));
    QCOMPARE(log.count("ERROR"), 0);
    QVERIFY(unit->mode() == Mode::Bootloader);
}

void tst_downloadend::stopBeforeAChunkIsSent()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QSharedPointer<DfuDevice> device = open(unit, {std::chrono::milliseconds(100)});
    // Three pauses lie between the command that sets the address and the data.
    const auto job = makeJob(QByteArray(5000, 'x'), device);
    JobRecorder heard(*job);
    job->start();
    const auto lastRequestIs = [&](const char* name) {
        const auto trace = unit->trace();
        return !trace.empty() && trace.back().name == name;
    };
    QVERIFY(waitFor([&] { return lastRequestIs("set-address"); }));
    job->stop();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.errors, QStringList());
    QCOMPARE(heard.finished, 0);
    for (const TraceEntry& entry : unit->trace())
        QVERIFY(entry.name != "write");
}

void tst_downloadend::stopAtTheEnd()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(100, "1.3.1"));
    const auto job = makeJob(image, open(unit));
    JobRecorder heard(*job);
    // Queued behind the last chunk, so that it comes while the final address is being set.
    connect(
        job.data(), &DFUDownloadJob::uploadProgress, job.data(), [&] { job->requestStop(); },
        Qt::QueuedConnection);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.errors, QStringList());
    QCOMPARE(heard.finished, 1);
    // Finished is not said of a unit that was left in its bootloader.
    QVERIFY(waitFor([&] { return unit->mode() == Mode::Application; }));
    QCOMPARE(toByteArray(unit->applicationContent()), image);
}

void tst_downloadend::stopWhileBusyWithAChunk()
{
    const P_Unit unit = m_bus->plugBootloader();
    const auto job = makeJob(QByteArray(5000, 'x'), open(unit));
    unit->addFault(Fault::on("write", Action::StayBusy, Fault::Forever));
    JobRecorder heard(*job);
    job->start();
    QVERIFY(waitFor([&] {
        return unit->trace().size() > 12; // well into the wait for the first chunk
    }));
    job->stop();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.errors, QStringList({"Error state while flashing firmware.", wrappedError}));
}

void tst_downloadend::stopOfASilentUnit()
{
    const P_Unit unit = m_bus->plugBootloader();
    LogCapture log({"DFUDownloadJob"});
    const auto job = makeJob(QByteArray(5000, 'x'), open(unit));
    unit->addFault(Fault::on("getstatus", Action::Silence, 0, 2));
    JobRecorder heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return unit->trace().size() >= 3; }));
    QElapsedTimer time;
    time.start();
    job->stop(); // the unanswered status read has a time-out of 100 s
    QVERIFY2(time.elapsed() >= 1900 && time.elapsed() < 3500,
             qPrintable(QString::number(time.elapsed())));
    QVERIFY(job->isFinished());
    QVERIFY(log.contains("ERROR", "timed out while closing"));
}

void tst_downloadend::longWaitsAreLogged()
{
    const P_Unit unit = m_bus->plugBootloader();
    unit->addFault(Fault::on("erase", Action::StayBusy, 100));
    const QSharedPointer<DfuDevice> device =
        open(unit, {std::chrono::milliseconds(5), std::chrono::milliseconds(1000),
                    std::chrono::milliseconds(50)});
    LogCapture log({"DfuDevice"});
    const auto job = makeJob(toByteArray(makeImage(5000, "1.3.1")), device);
    job->start();
    QVERIFY(waitFor([&] { return job->isFinished(); }));
    // After 50, 100, 200 ms and so on, not at each of the hundred polls; not for the other pages.
    const int warnings = log.messages().filter("The unit has been busy for").size();
    QVERIFY2(warnings >= 4 && warnings < 15, qPrintable(QString::number(warnings)));
}

void tst_downloadend::jobWithoutOwnerGoesOn()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(30000, "1.3.1"));
    auto job = makeJob(image, open(unit));
    {
        JobRecorder heard(*job);
        job->start();
        QVERIFY(waitFor([&] { return !heard.progress.isEmpty(); }));
    }
    job.reset();
    const auto keepers = [] {
        return QCoreApplication::instance()->findChildren<DetachedJob*>().size();
    };
    QCOMPARE(keepers(), 1);
    QVERIFY(waitFor([&] { return unit->mode() == Mode::Application; }));
    QCOMPARE(toByteArray(unit->applicationContent()), image);
    QVERIFY(waitFor([&] { return keepers() == 0; }));
}

void tst_downloadend::jobWithoutOwnerEndsWithTheProgram()
{
    const P_Unit unit = m_bus->plugBootloader();
    unit->addFault(Fault::on("erase", Action::StayBusy, Fault::Forever));
    QSharedPointer<DfuDevice> device = open(unit);
    const QPointer<DfuDevice> handle = device.data();
    auto job = makeJob(toByteArray(makeImage(30000, "1.3.1")), device);
    device.reset();
    job->start();
    QVERIFY(waitFor([&] { return unit->trace().size() >= 5; }));
    job.reset();
    DetachedJob::endAll();
    QCOMPARE(QCoreApplication::instance()->findChildren<DetachedJob*>().size(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(handle.isNull());
}

QTEST_GUILESS_MAIN(tst_downloadend)
#include "tst_downloadend.moc"
