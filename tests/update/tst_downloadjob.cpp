// The download job against a virtual bootloader, over the real libusb.
#include "BusFixture.h"
#include "DFUDownloadJob.h"
#include "DetachedJob.h"
#include "FirmwareImage.h"
#include "LogCapture.h"

#include <QPointer>
#include <QTest>

using namespace AquenSolvar::Device;
using namespace VirtualUnit;
using Action = Fault::Action;

Q_DECLARE_METATYPE(VirtualUnit::Fault::Action)

namespace {

constexpr int maxSize = 0x28000;
const QString wrappedError = QStringLiteral(
    "Caught USB exception: Error state while downloading to Aquen/Solvar in \"DFU\" mode.");

// What a job said, received on the test's thread.
struct Heard : QObject
{
    explicit Heard(DFUDownloadJob& job)
    {
        connect(&job, &DFUDownloadJob::uploadError, this, [this](QString text) { errors << text; });
        connect(&job, &DFUDownloadJob::uploadProgress, this, [this](float p) { progress << p; });
        connect(&job, &DFUDownloadJob::uploadFinished, this, [this] { ++finished; });
        connect(&job, &QThread::finished, this, [this] { ended = true; });
    }
    QStringList errors;
    QVector<float> progress;
    int finished = 0;
    bool ended = false;
};

// One control request in a form that reads well when a comparison fails.
QString line(const TraceEntry& entry)
{
    return QStringLiteral("%1 %2 v%3 i%4 l%5 %6")
        .arg(entry.setup.bmRequestType, 2, 16, QLatin1Char('0'))
        .arg(entry.setup.bRequest)
        .arg(entry.setup.wValue)
        .arg(entry.setup.wIndex)
        .arg(entry.setup.wLength)
        .arg(QString::fromLatin1(toByteArray(entry.payload).toHex()));
}

} // namespace

class tst_downloadjob : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void requestSequence();
    void emptyImage();
    void sizeLimit();
    void withoutDevice();
    void failures_data();
    void failures();
    void hostileSizes_data();
    void hostileSizes();
    void smallTransferSizeWarns();
    void errorStateAtStart();
    void endInErrorStateCountsAsFinished();
    void stopInTheLoop();
    void stopBeforeAChunkIsSent();
    void stopAtTheEnd();
    void stopWhileBusyWithAChunk();
    void stopOfASilentUnit();
    void longWaitsAreLogged();
    void jobWithoutOwnerGoesOn();
    void jobWithoutOwnerEndsWithTheProgram();

private:
    QSharedPointer<DfuDevice> open(const P_Unit& unit);
    QSharedPointer<DFUDownloadJob> makeJob(const QByteArray& image,
                                           const QSharedPointer<DfuDevice>& device);
    std::unique_ptr<BusFixture> m_bus;
};

void tst_downloadjob::initTestCase()
{
    m_bus = std::make_unique<BusFixture>();
}

void tst_downloadjob::cleanup()
{
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
}

QSharedPointer<DfuDevice> tst_downloadjob::open(const P_Unit& unit)
{
    // An earlier device of the test lets go of the unit when its deferred deletion runs.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const USB::P_LibUsbDevice record = m_bus->awaitRecord(unit->productId());
    QSharedPointer<DfuDevice> device(new DfuDevice(record), &QObject::deleteLater);
    device->setPollSleep(std::chrono::milliseconds(1));
    device->init();
    device->setAlternateSetting(0);
    unit->clearTrace();
    return device;
}

QSharedPointer<DFUDownloadJob> tst_downloadjob::makeJob(const QByteArray& image,
                                                        const QSharedPointer<DfuDevice>& device)
{
    return QSharedPointer<DFUDownloadJob>(new DFUDownloadJob(image, device, maxSize),
                                          &DFUDownloadJob::release);
}

void tst_downloadjob::requestSequence()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(5000, "1.3.1"));
    const auto job = makeJob(image, open(unit));
    Heard heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));

    const QString status = "a1 3 v0 i0 l6 ";
    const auto command = [](const char* hex) {
        return QStringLiteral("21 1 v0 i0 l5 ") + hex;
    };
    const auto write = [](const QByteArray& data) {
        return QStringLiteral("21 1 v2 i0 l%1 %2")
            .arg(data.size())
            .arg(QString::fromLatin1(data.toHex()));
    };
    // Each command: one status read that starts the work, one that finds it done; one more status
    // read after the address.
    const QStringList expected = {
        status,
        command("4100380008"),
        status,
        status,
        command("2100380008"),
        status,
        status,
        status,
        write(image.mid(0, 2048)),
        status,
        status,
        command("4100400008"),
        status,
        status,
        command("2100400008"),
        status,
        status,
        status,
        write(image.mid(2048, 2048)),
        status,
        status,
        command("4100480008"),
        status,
        status,
        command("2100480008"),
        status,
        status,
        status,
        write(image.mid(4096, 904)),
        status,
        status,
        command("2100500008"),
        status,
        status,
        write(QByteArray()),
        status,
    };
    QStringList sent;
    for (const TraceEntry& entry : unit->trace()) {
        if (entry.mode == Mode::Bootloader)
            sent << line(entry);
    }
    QCOMPARE(sent, expected);
    QCOMPARE(heard.progress, (QVector<float>{0.0f, 0.4096f, 0.8192f}));
    QCOMPARE(heard.finished, 1);
    QCOMPARE(heard.errors, QStringList());
    QVERIFY(waitFor([&] { return unit->mode() == Mode::Application; }));
    QCOMPARE(toByteArray(unit->applicationContent()), image);
}

void tst_downloadjob::emptyImage()
{
    const P_Unit unit = m_bus->plugBootloader();
    LogCapture log({"DFUDownloadJob"});
    const auto job = makeJob(QByteArray(), open(unit));
    Heard heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.finished, 1);
    QCOMPARE(heard.progress.size(), 0);
    QVERIFY(log.contains("INFO", "File successfully downloaded."));
    QStringList names;
    for (const TraceEntry& entry : unit->trace())
        names << QString::fromStdString(entry.name);
    QCOMPARE(names.mid(0, 5),
             QStringList({"getstatus", "set-address", "getstatus", "getstatus", "finish"}));
}

void tst_downloadjob::sizeLimit()
{
    const P_Unit unit = m_bus->plugBootloader();
    {
        const auto refused = makeJob(QByteArray(163840, 'x'), open(unit));
        Heard heard(*refused);
        refused->start();
        QVERIFY(waitFor([&] { return heard.ended; }));
        QCOMPARE(heard.errors, QStringList("Too much data to complete upload."));
        QCOMPARE(unit->trace().size(), std::size_t(0));
    }
    const auto accepted = makeJob(QByteArray(163839, 'x'), open(unit));
    Heard heardToo(*accepted);
    accepted->start();
    QVERIFY(waitFor([&] { return !heardToo.progress.isEmpty(); }));
    accepted->stop();
}

void tst_downloadjob::withoutDevice()
{
    const auto job = makeJob("image", QSharedPointer<DfuDevice>());
    Heard heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.errors, QStringList("No device to update."));
}

void tst_downloadjob::failures_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<int>("occurrence");
    QTest::addColumn<Action>("action");
    QTest::addColumn<int>("value");
    QTest::addColumn<QStringList>("errors");
    // Status reads of the first chunk: 1 at the start, 2 and 3 erase, 4 and 5 set address, 6 the
    // job's own, 7 and 8 data.
    QTest::newRow("first status read")
        << "getstatus" << 1 << Action::Stall << 0 << QStringList("Failed to read device status.");
    QTest::newRow("erase refused")
        << "erase" << 1 << Action::Stall << 0 << QStringList("Failed to erase flash.");
    QTest::newRow("erase fails") << "erase" << 2 << Action::FailStatus << 4
                                 << QStringList("Failed to erase flash.");
    QTest::newRow("status read while erasing")
        << "getstatus" << 3 << Action::Stall << 0 << QStringList("Failed to erase flash.");
    QTest::newRow("address refused")
        << "set-address" << 1 << Action::Stall << 0 << QStringList("Failed to upload firmware.");
    QTest::newRow("status read after the address")
        << "getstatus" << 6 << Action::Stall << 0 << QStringList("Failed to flash device sector.");
    QTest::newRow("bad status after the address")
        << "getstatus" << 6 << Action::FailStatus << 8
        << QStringList({"Error while flashing firmware.", wrappedError});
    QTest::newRow("data refused") << "write" << 1 << Action::Stall << 0
                                  << QStringList("Failed to upload firmware data.");
    QTest::newRow("unplugged at the data")
        << "write" << 2 << Action::LeaveBus << 0 << QStringList("Failed to upload firmware data.");
    QTest::newRow("status read after the data")
        << "getstatus" << 7 << Action::Stall << 0 << QStringList("Failed to read device status.");
    QTest::newRow("programming fails")
        << "write" << 2 << Action::FailStatus << 6
        << QStringList({"Error state while flashing firmware.", wrappedError});
    QTest::newRow("final address refused") << "set-address" << 3 << Action::Stall << 0
                                           << QStringList("Failed to finalize firmware flashing.");
    QTest::newRow("end refused") << "finish" << 1 << Action::Stall << 0
                                 << QStringList("Failed to finalize firmware flashing.");
}

void tst_downloadjob::failures()
{
    QFETCH(QString, request);
    QFETCH(int, occurrence);
    QFETCH(Action, action);
    QFETCH(int, value);
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(4000, "1.3.1"));
    {
        const auto job = makeJob(image, open(unit));
        unit->addFault(
            Fault::on(request.toStdString(), action, unsigned(value), unsigned(occurrence)));
        Heard heard(*job);
        job->start();
        QVERIFY(waitFor([&] { return heard.ended; }));
        QTEST(heard.errors, "errors");
        QCOMPARE(heard.finished, 0);
    }
    // The unit is still a bootloader, and the next attempt brings it home.
    unit->clearFaults();
    QTest::qWait(300); // a unit that left is back by then
    QVERIFY(unit->mode() == Mode::Bootloader);
    const auto again = makeJob(image, open(unit));
    Heard heard(*again);
    again->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.errors, QStringList());
    QVERIFY(waitFor([&] { return unit->mode() == Mode::Application; }));
    QCOMPARE(toByteArray(unit->applicationContent()), image);
}

void tst_downloadjob::hostileSizes_data()
{
    QTest::addColumn<int>("transferSize");
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("error");
    const QString good = "@Internal Flash  /0x08000000/07*002Ka,121*002Kg";
    QTest::newRow("transfer size 0") << 0 << good << "Failed to upload firmware data.";
    QTest::newRow("page size 0") << 2048 << "@F/0x08000000/200*000Ka,1*1Kg"
                                 << "Failed to erase flash.";
    QTest::newRow("image outside the segments") << 2048 << "@F/0x08000000/04*001Kg"
                                                << "Failed to erase flash.";
    QTest::newRow("layout is noise") << 2048 << "no layout"
                                     << "Failed to erase flash.";
}

void tst_downloadjob::hostileSizes()
{
    QFETCH(int, transferSize);
    QFETCH(QString, layout);
    QFETCH(QString, error);
    const P_Unit unit = m_bus->plugBootloader();
    unit->adjust([&](Knobs& knobs) {
        knobs.transferSize = std::uint16_t(transferSize);
        knobs.layout = layout.toStdString();
    });
    m_bus->bus().unplug(unit);
    QVERIFY(m_bus->awaitGone(0x0C05));
    m_bus->bus().plug(unit);
    const auto job = makeJob(QByteArray(5000, 'x'), open(unit));
    Heard heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.errors, QStringList(error));
    for (const TraceEntry& entry : unit->trace())
        QCOMPARE(entry.name, std::string("getstatus"));
}

void tst_downloadjob::smallTransferSizeWarns()
{
    const P_Unit unit = m_bus->plugBootloader();
    unit->adjust([](Knobs& knobs) { knobs.transferSize = 1024; });
    LogCapture log({"DFUDownloadJob"});
    const auto job = makeJob(QByteArray(1024, 'x'), open(unit));
    Heard heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(log.count("WARN"), 1);
}

void tst_downloadjob::errorStateAtStart()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QSharedPointer<DfuDevice> device = open(unit);
    QVERIFY(!device->dfuSpecialCommand(0xFFFFFFFF, ERASE_PAGE));
    QCOMPARE(unit->dfuState(), Dfu::State::Error);
    {
        unit->addFault(Fault::on("clrstatus", Action::Stall));
        const auto refused = makeJob(QByteArray(100, 'x'), device);
        Heard heard(*refused);
        refused->start();
        QVERIFY(waitFor([&] { return heard.ended; }));
        QCOMPARE(heard.errors, QStringList("Failed to clear device status."));
        QCOMPARE(heard.finished, 0);
    }
    unit->clearTrace();
    const auto job = makeJob(QByteArray(100, 'x'), device);
    Heard heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(unit->trace().at(0).name, std::string("getstatus"));
    QCOMPARE(unit->trace().at(1).name, std::string("clrstatus"));
    QCOMPARE(unit->trace().at(2).name, std::string("erase"));
    QCOMPARE(heard.finished, 1);
}

void tst_downloadjob::endInErrorStateCountsAsFinished()
{
    const P_Unit unit = m_bus->plugBootloader();
    LogCapture log({"DFUDownloadJob"});
    const auto job = makeJob(QByteArray(100, 'x'), open(unit));
    // 8 status reads of the chunk, 2 of the final address, then the one after the end.
    unit->addFault(Fault::on("getstatus", Action::FailStatus, 10, 11));
    Heard heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.finished, 1);
    QCOMPARE(heard.errors, QStringList());
    QVERIFY(log.contains("INFO", "state \"Error\""));
}

void tst_downloadjob::stopInTheLoop()
{
    const P_Unit unit = m_bus->plugBootloader();
    LogCapture log({"DFUDownloadJob"});
    const auto job = makeJob(QByteArray(100000, 'x'), open(unit));
    Heard heard(*job);
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

void tst_downloadjob::stopBeforeAChunkIsSent()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QSharedPointer<DfuDevice> device = open(unit);
    // Three pauses lie between the command that sets the address and the data.
    device->setPollSleep(std::chrono::milliseconds(100));
    const auto job = makeJob(QByteArray(5000, 'x'), device);
    Heard heard(*job);
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

void tst_downloadjob::stopAtTheEnd()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(100, "1.3.1"));
    const auto job = makeJob(image, open(unit));
    Heard heard(*job);
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

void tst_downloadjob::stopWhileBusyWithAChunk()
{
    const P_Unit unit = m_bus->plugBootloader();
    const auto job = makeJob(QByteArray(5000, 'x'), open(unit));
    unit->addFault(Fault::on("write", Action::StayBusy, Fault::Forever));
    Heard heard(*job);
    job->start();
    QVERIFY(waitFor([&] {
        return unit->trace().size() > 12; // well into the wait for the first chunk
    }));
    job->stop();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.errors, QStringList({"Error state while flashing firmware.", wrappedError}));
}

void tst_downloadjob::stopOfASilentUnit()
{
    const P_Unit unit = m_bus->plugBootloader();
    LogCapture log({"DFUDownloadJob"});
    const auto job = makeJob(QByteArray(5000, 'x'), open(unit));
    unit->addFault(Fault::on("getstatus", Action::Silence, 0, 2));
    Heard heard(*job);
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

void tst_downloadjob::longWaitsAreLogged()
{
    const P_Unit unit = m_bus->plugBootloader();
    unit->addFault(Fault::on("erase", Fault::Action::StayBusy, 100));
    const QSharedPointer<DfuDevice> device = open(unit);
    device->setPollSleep(std::chrono::milliseconds(5));
    device->setBusyWarning(std::chrono::milliseconds(50));
    LogCapture log({"DfuDevice"});
    const auto job = makeJob(toByteArray(makeImage(5000, "1.3.1")), device);
    job->start();
    QVERIFY(waitFor([&] { return job->isFinished(); }));
    // After 50, 100, 200 ms and so on, not at each of the hundred polls; not for the other pages.
    const int warnings = log.messages().filter("The unit has been busy for").size();
    QVERIFY2(warnings >= 4 && warnings < 15, qPrintable(QString::number(warnings)));
}

void tst_downloadjob::jobWithoutOwnerGoesOn()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(30000, "1.3.1"));
    auto job = makeJob(image, open(unit));
    {
        Heard heard(*job);
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

void tst_downloadjob::jobWithoutOwnerEndsWithTheProgram()
{
    const P_Unit unit = m_bus->plugBootloader();
    unit->addFault(Fault::on("erase", Fault::Action::StayBusy, Fault::Forever));
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

QTEST_GUILESS_MAIN(tst_downloadjob)
#include "tst_downloadjob.moc"
