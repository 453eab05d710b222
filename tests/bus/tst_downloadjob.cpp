// SPDX-License-Identifier: LicenseRef-Proprietary
// What the download job sends to a bootloader, reports and logs, over the real libusb.
#include "firmware/ImageSize.h"
#include "support/BusFixture.h"
#include "support/LogCapture.h"
#include "unit/FirmwareImage.h"
#include "update/DFUDownloadJob.h"

#include <QTest>

using namespace AquenSolvar::Device;
using namespace VirtualUnit;
using std::chrono::milliseconds;

namespace {

// The signals of a job, received on the test's thread.
struct JobRecorder : QObject
{
    explicit JobRecorder(DFUDownloadJob& job)
    {
        connect(&job, &DFUDownloadJob::uploadError, this,
                [this](const QString& text) { events << "error " + text; });
        connect(&job, &DFUDownloadJob::uploadProgress, this, [this](float fraction) {
            events << "progress " + QString::number(double(fraction), 'g', 4);
        });
        connect(&job, &DFUDownloadJob::uploadFinished, this, [this] { events << "finished"; });
    }

    QStringList events;
};

} // namespace

class tst_downloadjob : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_bus = std::make_unique<BusFixture>(); }
    void init() { m_unit = m_bus->plugBootloader(Kind::Solvar); }
    void cleanup();
    void requestSequence();
    void stops_data();
    void stops();
    void errorState();
    void refusals();
    void longWaitsAreLogged();

private:
    QSharedPointer<DfuDevice> open(DfuTimes times = {milliseconds(1)});
    QString run(const QByteArray& image, const QSharedPointer<DfuDevice>& device, int stopAt = 0);
    QStringList sent() const;

    std::unique_ptr<BusFixture> m_bus;
    P_Unit m_unit;
    const QByteArray m_image = toByteArray(makeImage(5000, "1.3.1"));
};

void tst_downloadjob::cleanup()
{
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
}

// The unit opened and set up, its flash not erased, its trace empty.
QSharedPointer<DfuDevice> tst_downloadjob::open(DfuTimes times)
{
    // An earlier device closes when its deferred deletion runs.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const USB::P_LibUsbDevice record = m_bus->awaitRecord(0x0C06);
    QSharedPointer<DfuDevice> device(new DfuDevice(record, times), &QObject::deleteLater);
    device->init();
    device->setAlternateSetting(0);
    m_unit->loadImage(Bytes(Flash::End - Flash::ApplicationStart, 0));
    m_unit->clearTrace();
    return device;
}

// Runs a job to its end, or requests its stop at that request. Its signals in order.
QString tst_downloadjob::run(const QByteArray& image, const QSharedPointer<DfuDevice>& device,
                             int stopAt)
{
    DFUDownloadJob job(image, device, imageSizeBound);
    const JobRecorder recorder(job);
    if (stopAt > 0) {
        Fault stop = Fault::on("any", Fault::Action::Delay, 0, unsigned(stopAt));
        stop.onStrike = [&job] {
            job.requestStop();
        };
        m_unit->addFault(stop);
    }
    job.start();
    const bool ended = waitFor([&] { return job.isFinished(); }, 20000);
    job.stop();
    QCoreApplication::processEvents();
    m_unit->clearFaults();
    return ended ? recorder.events.join('|') : QStringLiteral("does not end");
}

QStringList tst_downloadjob::sent() const
{
    QStringList names;
    for (const TraceEntry& entry : m_unit->trace())
        names << QString::fromStdString(entry.name);
    return names;
}

void tst_downloadjob::requestSequence()
{
    const LogCapture log({"DFUDownloadJob", "DfuDevice", "ControlTransfer"});
    QElapsedTimer time;
    time.start();
    QCOMPARE(run(m_image, open(DfuTimes())), "progress 0|progress 0.4096|progress 0.8192|finished");
    QCOMPARE(int(DfuTimes().statusTimeout.count()), 100000); // some units are silent while erasing
    QVERIFY(time.elapsed() >= 23 * 50); // seven pauses for each chunk, two for the final address
    QCOMPARE(log.messages().filter(QRegularExpression("^[^DT]")),
             QStringList({"INFO File successfully downloaded.",
                          "INFO Transitioning to dfuMANIFEST state"}));
    QVERIFY(log.contains("DEBUG", "Request type 21, request 01, value 0002, index 0000, length "
                                  "2048: 2048 bytes after "));
    QVERIFY(log.contains("TRACE", "Sent 41 00 38 00 08"));
    QVERIFY(log.contains("DEBUG", "Status OK, state Download busy, poll time-out "));

    const QString chunk = "erase|getstatus|getstatus|set-address|getstatus|getstatus|getstatus|"
                          "write|getstatus|getstatus|";
    QCOMPARE(sent().join('|'),
             "getstatus|" + chunk.repeated(3) + "set-address|getstatus|getstatus|finish|getstatus");
    QCOMPARE(toByteArray(m_unit->trace().at(31).payload).toHex(), "2100500008");
    QVERIFY(waitFor([&] { return m_unit->mode() == Mode::Application; }));
}

void tst_downloadjob::stops_data()
{
    QTest::addColumn<int>("request"); // at which the stop comes
    QTest::addColumn<int>("sent");
    QTest::addColumn<QString>("events");
    // Of a chunk: two pages of three requests each, the address 8 to 11, the data 12 to 14.
    QTest::newRow("before the first chunk") << 1 << 1 << "";
    QTest::newRow("first page") << 2 << 4 << "";
    QTest::newRow("address") << 8 << 11 << "";
    QTest::newRow("while busy with data")
        << 12 << 13
        << "error Error state while flashing firmware.|error Caught USB exception: Error state "
           "while downloading to Aquen/Solvar in \"DFU\" mode.";
    QTest::newRow("chunk written") << 14 << 14 << "progress 0";
    QTest::newRow("too late") << 41 << 45 << "progress 0|progress 0.4096|progress 0.8192|finished";
}

void tst_downloadjob::stops()
{
    QFETCH(int, request);
    m_unit->adjust([](Overrides& overrides) {
        overrides.pageSize = 1024;
        overrides.layout = "@Internal Flash  /0x08000000/07*002Ka,242*001Kg";
    });
    QTEST(run(m_image, open(), request), "events");
    QTEST(sent().size(), "sent");
    QCOMPARE(m_unit->firmwareVersion() == "1.3.1", request > 40);
}

void tst_downloadjob::errorState()
{
    const QSharedPointer<DfuDevice> device = open();
    QVERIFY(!device->dfuSpecialCommand(0, ERASE_PAGE));
    m_unit->addFault(Fault::on("clrstatus", Fault::Action::Stall));
    QCOMPARE(run("image", device), "error Failed to clear device status.");
    QCOMPARE(run("image", device), "progress 0|finished");
    QCOMPARE(sent().count("clrstatus"), 2);
}

void tst_downloadjob::refusals()
{
    QCOMPARE(run("image", {}), "error No device to update.");
    m_unit->addFault(Fault::on("write", Fault::Action::Silence));
    QElapsedTimer time;
    time.start();
    const QSharedPointer<DfuDevice> device = open();
    QCOMPARE(run("image", device), "error Failed to upload firmware data.");
    QVERIFY(time.elapsed() >= 1000);
    QVERIFY(device->status() == DFU_STATUS_ERROR_UNKNOWN && device->state() == DFU_STATE_ERROR);
    device->parseInterfaceString("@Another setting/0x10000000/1*1Kg");
    QCOMPARE(device->segmentForAddress(0x08003800).pageSize, 2048U);
    device->close();
    m_unit->adjust([](Overrides& overrides) { overrides.layout = "@\n/0x08000000/9*0Ka,1*1Kg"; });
    const LogCapture log({"USBDevice"});
    QCOMPARE(run("image", open()), "error Failed to erase flash.");
    QVERIFY(log.contains("DEBUG", "\"@\\n/0x08000000/")); // on one line
    // An empty download would start the unfinished firmware.
    m_unit->adjust([](Overrides& overrides) { overrides.transferSize = 0; });
    QCOMPARE(run("image", open()), "error Failed to upload firmware data.");
    QVERIFY(!sent().contains("finish"));
}

void tst_downloadjob::longWaitsAreLogged()
{
    m_unit->addFault(Fault::on("erase", Fault::Action::StayBusy, Fault::Forever));
    const milliseconds tick(1);
    QCOMPARE(run("image", open({tick, milliseconds(1000), tick, 30 * tick})),
             "error Caught USB exception: The unit has been busy for 0 s.");
    m_unit->clearFaults();
    m_unit->busReset();
    m_unit->addFault(Fault::on("erase", Fault::Action::StayBusy, 100));
    const LogCapture log({"DfuDevice"});
    run(QByteArray(100, 'x'), open({milliseconds(1), milliseconds(1000), milliseconds(2)}));
    // After 2, 4, 8 ms and so on, not at each of the hundred reads.
    const int warnings = log.count("WARN");
    QVERIFY2(warnings >= 4 && warnings < 25, qPrintable(QString::number(warnings)));
}

QTEST_GUILESS_MAIN(tst_downloadjob)
#include "tst_downloadjob.moc"
