// What the download job sends to a virtual bootloader, and what it says when that fails, over the
// real libusb.
#include "DownloadJobFixture.h"
#include "support/LogCapture.h"
#include "unit/FirmwareImage.h"

#include <QTest>

using namespace AquenSolvar::Device;
using namespace VirtualUnit;
using Action = Fault::Action;

Q_DECLARE_METATYPE(VirtualUnit::Fault::Action)

namespace {

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

class tst_downloadjob : public DownloadJobFixture
{
    Q_OBJECT

private slots:
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
};

void tst_downloadjob::requestSequence()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(5000, "1.3.1"));
    const auto job = makeJob(image, open(unit));
    JobRecorder heard(*job);
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
    JobRecorder heard(*job);
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
        JobRecorder heard(*refused);
        refused->start();
        QVERIFY(waitFor([&] { return heard.ended; }));
        QCOMPARE(heard.errors, QStringList("Too much data to complete upload."));
        QCOMPARE(unit->trace().size(), std::size_t(0));
    }
    const auto accepted = makeJob(QByteArray(163839, 'x'), open(unit));
    JobRecorder heardToo(*accepted);
    accepted->start();
    QVERIFY(waitFor([&] { return !heardToo.progress.isEmpty(); }));
    accepted->stop();
}

void tst_downloadjob::withoutDevice()
{
    const auto job = makeJob("image", QSharedPointer<DfuDevice>());
    JobRecorder heard(*job);
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
        JobRecorder heard(*job);
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
    JobRecorder heard(*again);
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
    unit->adjust([&](Overrides& overrides) {
        overrides.transferSize = std::uint16_t(transferSize);
        overrides.layout = layout.toStdString();
    });
    m_bus->bus().unplug(unit);
    QVERIFY(m_bus->awaitGone(0x0C05));
    m_bus->bus().plug(unit);
    const auto job = makeJob(QByteArray(5000, 'x'), open(unit));
    JobRecorder heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.errors, QStringList(error));
    for (const TraceEntry& entry : unit->trace())
        QCOMPARE(entry.name, std::string("getstatus"));
}

void tst_downloadjob::smallTransferSizeWarns()
{
    const P_Unit unit = m_bus->plugBootloader();
    unit->adjust([](Overrides& overrides) { overrides.transferSize = 1024; });
    LogCapture log({"DFUDownloadJob"});
    const auto job = makeJob(QByteArray(1024, 'x'), open(unit));
    JobRecorder heard(*job);
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
        JobRecorder heard(*refused);
        refused->start();
        QVERIFY(waitFor([&] { return heard.ended; }));
        QCOMPARE(heard.errors, QStringList("Failed to clear device status."));
        QCOMPARE(heard.finished, 0);
    }
    unit->clearTrace();
    const auto job = makeJob(QByteArray(100, 'x'), device);
    JobRecorder heard(*job);
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
    JobRecorder heard(*job);
    job->start();
    QVERIFY(waitFor([&] { return heard.ended; }));
    QCOMPARE(heard.finished, 1);
    QCOMPARE(heard.errors, QStringList());
    QVERIFY(log.contains("INFO", "state \"Error\""));
}

QTEST_GUILESS_MAIN(tst_downloadjob)
#include "tst_downloadjob.moc"
