#include "UnitDriver.h"
#include "unit/FirmwareImage.h"

#include <QtTest>

using namespace VirtualUnit;

namespace {

constexpr std::uint32_t applicationStart = UnitDriver::ApplicationStart;

UnitSetup application(const char* version)
{
    UnitSetup setup;
    setup.firmware = version;
    return setup;
}

} // namespace

/// The model alone: as strict as the hardware, or the updater would pass here and fail there.
class tst_unit : public QObject
{
    Q_OBJECT

private slots:
    void bootloader_data();
    void bootloader();
    void busyUntilDone();
    void faults();
    void pageSizes_data();
    void pageSizes();
    void flashReallyChangesTheVersion();
    void interruptedFlashStaysBootloader();
    void wishToDropDiesWithThePower();
    void brokenImages();
    void overrides();
};

void tst_unit::bootloader_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<int>("outcome"); // of the last step
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("state");
    const auto row = [](const char* name, const char* steps, Answer::Kind outcome, int status,
                        int state) {
        QTest::newRow(name) << QString::fromLatin1(steps) << static_cast<int>(outcome) << status
                            << state;
    };
    const auto data = Answer::Kind::Data;
    const auto ack = Answer::Kind::Acknowledge;
    const auto stall = Answer::Kind::Stall;
    row("idle", "st", data, 0, 2);
    row("first poll says busy", "set:08003800 st", data, 0, 4);
    row("second poll says done", "set:08003800 st wait st", data, 0, 5);
    row("busy while the work takes", "erase:08003800 st st", data, 0, 4);
    row("no download over another", "erase:08003800 erase:08004000", stall, 15, 10);
    row("no request while busy", "erase:08003800 st abort", stall, 15, 10);
    row("abort before the work begins", "erase:08003800 abort", ack, 0, 2);
    row("no finish without a download", "finish", stall, 15, 10);
    row("no upload amid a download", "set:08003800 st wait st up:2:10", stall, 15, 10);
    row("nothing to clear", "clr", stall, 15, 10);
    row("an error is cleared", "clr clr", ack, 0, 2);
    row("no abort out of an error", "clr abort", stall, 15, 10);
    row("no download in an error", "clr erase:08003800", stall, 15, 10);
    row("block 1 is reserved", "write:1:10", stall, 15, 10);
    row("unknown command", "raw:55", stall, 15, 10);
    row("read-unprotect is refused", "raw:92", stall, 15, 10);
    row("block over the transfer size", "set:08003800 st wait st write:2:801", stall, 15, 10);
    row("upload over the transfer size", "up:2:801", stall, 15, 10);
    row("erase in the bootloader", "erase:08003000 st wait st", data, 3, 10);
    row("write in the bootloader", "set:08000000 st wait st write:2:10 st wait st", data, 3, 10);
    row("erase outside", "erase:08040000 st wait st", data, 1, 10);
    row("address outside", "set:07FFFFFF st wait st", data, 1, 10);
    row("write over the end", "set:0803FFF8 st wait st write:2:10 st wait st", data, 1, 10);
    row("write far block outside", "set:08003800 st wait st write:FFFF:10 st wait st", data, 1, 10);
    row("write twice", "set:08003800 st wait st write:2:10 st wait st write:2:10 st wait st", data,
        0, 5);
    row("commands", "up:0:3", data, 0, 9);
    row("short upload ends it", "up:0:10", data, 0, 2);
    row("upload outside", "set:08040000 st wait st abort up:2:10", stall, 8, 10);
    row("after manifest it is deaf", "set:08003800 st wait st finish st st", Answer::Kind::Silence,
        0, 7);
    row("manifest", "set:08003800 st wait st finish st", data, 0, 7);
    row("detach leaves", "detach", ack, 0, 2);
}

void tst_unit::bootloader()
{
    QFETCH(QString, steps);
    QFETCH(int, outcome);
    QFETCH(int, status);
    QFETCH(int, state);
    UnitDriver driver;
    Answer last;
    for (const QString& step : steps.split(QLatin1Char(' ')))
        last = driver.step(step);
    QCOMPARE(static_cast<int>(last.kind), outcome);
    QCOMPARE(static_cast<int>(driver.unit().dfuState()), state);
    const bool leaves =
        steps.endsWith(QLatin1String("finish st")) || steps == QLatin1String("detach");
    QCOMPARE(last.departure.has_value(), leaves);
    // GETSTATUS itself moves on from some states; where it is the last step its answer is looked
    // at.
    if (state == 7 && outcome == static_cast<int>(Answer::Kind::Silence))
        return;
    const Bytes reply = steps.endsWith(QLatin1String("st")) ? last.data : driver.read(3, 0, 6).data;
    QCOMPARE(static_cast<int>(reply.at(0)), status);
}

void tst_unit::busyUntilDone()
{
    UnitDriver driver;
    driver.unit().adjust([](Overrides& overrides) { overrides.eraseTime = milliseconds(300); });
    driver.command(0x41, applicationStart);
    QCOMPARE(driver.read(3, 0, 6).data, (Bytes{0, 0x2C, 0x01, 0, 4, 0})); // 300 ms
    driver.pass(milliseconds(299));
    QCOMPARE(driver.read(3, 0, 6).data.at(4), std::uint8_t{4});
    driver.pass(milliseconds(1));
    QCOMPARE(driver.read(3, 0, 6).data, (Bytes{0, 0, 0, 0, 5, 0}));
}

void tst_unit::faults()
{
    UnitDriver driver;
    Unit& unit = driver.unit();
    unit.addFault(Fault::on("erase", Fault::Action::FailStatus, 4, 2));
    driver.command(0x41, applicationStart);
    QCOMPARE(driver.poll(), std::make_pair(0, 5));
    driver.command(0x41, applicationStart);
    QCOMPARE(driver.poll(), std::make_pair(4, 10));
    QCOMPARE(driver.write(4).kind, Answer::Kind::Acknowledge);

    unit.addFault(Fault::on("set-address", Fault::Action::StayBusy, 3));
    driver.command(0x21, applicationStart);
    for (int polls = 0; polls < 4; ++polls) {
        QCOMPARE(driver.read(3, 0, 6).data.at(4), std::uint8_t{4});
        driver.pass(milliseconds(1000));
    }
    QCOMPARE(driver.read(3, 0, 6).data.at(4), std::uint8_t{5});

    unit.addFault(Fault::on("write", Fault::Action::StayBusy, Fault::Forever));
    driver.download(2, Bytes(16, 0));
    for (int polls = 0; polls < 200; ++polls) {
        driver.pass(milliseconds(1000));
        QCOMPARE(driver.read(3, 0, 6).data.at(4), std::uint8_t{4});
    }

    // By number, of requests of any kind, with an answer that goes with the unit.
    unit.clearFaults();
    Fault leave = Fault::at(2, Fault::Action::LeaveBus);
    unit.addFault(leave);
    unit.addFault(Fault::at(2, Fault::Action::NeverReturn));
    unit.restartCounting();
    QVERIFY(!driver.read(3, 0, 6).departure);
    const Answer gone = driver.read(3, 0, 6);
    QCOMPARE(gone.kind, Answer::Kind::Silence);
    QVERIFY(gone.departure && !gone.departure->returnAfter);
}

void tst_unit::pageSizes_data()
{
    QTest::addColumn<unsigned>("page");
    QTest::addColumn<QString>("layout");
    const auto row = [](unsigned page, const char* layout) {
        QTest::newRow(layout) << page << QString::fromLatin1(layout);
    };
    row(2048, "@Internal Flash  /0x08000000/07*002Ka,121*002Kg");
    row(1024, "@Internal Flash  /0x08000000/07*002Ka,242*001Kg");
    row(512, "@Internal Flash  /0x08000000/07*002Ka,484*512Bg");
    row(16384, "@Internal Flash  /0x08000000/07*002Ka,15*016Kg");
}

void tst_unit::pageSizes()
{
    QFETCH(unsigned, page);
    QFETCH(QString, layout);
    UnitDriver driver;
    driver.unit().adjust([page](Overrides& overrides) { overrides.pageSize = page; });
    driver.unit().fillApplication(0);
    QCOMPARE(QString::fromStdString(driver.unit().stringText(4)), layout);
    driver.command(0x41, applicationStart + page + 7);
    QCOMPARE(driver.poll(), std::make_pair(0, 5));
    const Bytes memory = driver.unit().readFlash(applicationStart, page * 3);
    const Bytes expected = [page] {
        Bytes bytes(page * 3, 0);
        std::fill_n(bytes.begin() + page, page, std::uint8_t{0xFF});
        return bytes;
    }();
    QVERIFY(memory == expected);
    // The rest of the page holds zeros now: bits that cannot be set by programming.
    driver.command(0x21, applicationStart);
    QCOMPARE(driver.poll(), std::make_pair(0, 5));
    driver.download(2, {0x01});
    QCOMPARE(driver.poll(), std::make_pair(6, 10));
}

void tst_unit::flashReallyChangesTheVersion()
{
    UnitDriver driver(application("1.2.0"));
    Unit& unit = driver.unit();
    QCOMPARE(unit.mode(), Mode::Application);
    const Answer drop = unit.control({0x41, 0x26, 0, 0, 0}, {});
    QVERIFY(drop.departure && drop.departure->returnAfter);
    unit.leave(Unit::Reason::Restarted);
    unit.arrive();
    QCOMPARE(unit.productId(), std::uint16_t{0x0C05});

    const Bytes image = makeImage(5000, "1.3.1");
    QVERIFY(driver.flash(image, image.size()));
    driver.download(2, {});
    QCOMPARE(driver.poll(), std::make_pair(0, 7));
    unit.leave(Unit::Reason::Restarted);
    unit.arrive();
    QCOMPARE(unit.productId(), std::uint16_t{0x0C07});
    QCOMPARE(unit.control({0xC1, 0x24, 0, 0, 8}, {}).data,
             (Bytes{'1', '.', '3', '.', '1', 0, 0, 0}));
    QVERIFY(unit.applicationContent() == image);
}

void tst_unit::interruptedFlashStaysBootloader()
{
    UnitSetup setup = application("1.2.0");
    setup.mode = Mode::Bootloader;
    UnitDriver driver(setup);
    QVERIFY(driver.flash(makeImage(5000, "1.3.1"), 4096));
    driver.unit().leave(Unit::Reason::Unplugged);
    driver.unit().arrive();
    QCOMPARE(driver.unit().mode(), Mode::Bootloader);
    QCOMPARE(driver.unit().firmwareVersion(), std::string());
}

void tst_unit::wishToDropDiesWithThePower()
{
    UnitDriver driver(application("1.2.0"));
    driver.unit().control({0x41, 0x26, 0, 0, 0}, {});
    driver.unit().leave(Unit::Reason::Unplugged);
    driver.unit().arrive();
    QCOMPARE(driver.unit().mode(), Mode::Application);
}

void tst_unit::brokenImages()
{
    const Bytes good = makeImage(1000, "1.3.1");
    QCOMPARE(readImage(good)->version, std::string("1.3.1"));
    QCOMPARE(readImage(good)->length, std::size_t{1000});
    for (const std::size_t at : {0UL, 33UL, 41UL, 45UL, 61UL, 999UL}) {
        Bytes bad = good;
        bad[at] ^= 0x10;
        QVERIFY2(!readImage(bad), qPrintable(QString::number(at)));
    }
    QVERIFY(!readImage(Bytes(good.begin(), good.end() - 1)));
    QVERIFY(!readImage({}));
    Bytes more = good;
    more.resize(5000, 0xFF);
    QVERIFY(readImage(more));
}

void tst_unit::overrides()
{
    UnitDriver driver(application("1.2.0"));
    Unit& unit = driver.unit();
    const auto read = [&unit](std::uint8_t request, std::uint16_t length) {
        return unit.control({0xC1, request, 0, 0, length}, {}).data;
    };
    QCOMPARE(read(0x27, 74).size(), std::size_t{74});
    unit.adjust([](Overrides& overrides) {
        overrides.schemaVersion = 4;
        overrides.versionAnswer = Bytes{'9'};
        overrides.configurationDescriptor = Bytes{9, 2, 0xFF, 0xFF, 1, 1, 0, 0xC0, 50};
    });
    QCOMPARE(read(0x27, 74).size(), std::size_t{64});
    QCOMPARE(read(0x29, 4), (Bytes{4, 0, 0, 0}));
    QCOMPARE(read(0x24, 8), (Bytes{'9'}));
    QCOMPARE(unit.control({0x80, 6, 0x0200, 0, 255}, {}).data.size(), std::size_t{9});
    QVERIFY_EXCEPTION_THROWN(unit.adjust([](Overrides& overrides) { overrides.pageSize = 0; }),
                             std::invalid_argument);
    QCOMPARE(unit.overrides().pageSize, 2048U);
}

QTEST_GUILESS_MAIN(tst_unit)
#include "tst_unit.moc"
