#include "UsbClient.h"
#include "umockdev/VirtualBus.h"
#include "unit/FirmwareImage.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <ctime>
#include <thread>

using namespace VirtualUnit;

namespace {

P_Unit makeAquen()
{
    UnitSetup setup;
    setup.serialName = "Washer 7";
    setup.firmware = "1.2.0";
    return std::make_shared<Unit>(setup);
}

} // namespace

/// The bus as a client of the real libusb sees it.
class tst_virtualbus : public QObject
{
    Q_OBJECT

private slots:
    void controlTransfers();
    void hardTimes_data();
    void hardTimes();
    void claimedByAnother();
    void dropToBootloaderAndBack();
    void hotPlug();
    void unplugEndsPendingTransfer();
    void idleClientSleeps();
    void clientOutlivesBus();
    void manyClients();
};

void tst_virtualbus::controlTransfers()
{
    VirtualBus bus;
    const P_Unit unit = makeAquen();
    bus.plug(unit);
    UsbClient client;
    QCOMPARE(client.count(0x0C07), 1);
    QCOMPARE(client.open(0x0C07), 0);
    QCOMPARE(client.deviceNumber(), static_cast<int>(bus.address(unit).device));

    Bytes version(8);
    QCOMPARE(client.control(0xC1, 0x24, 0, version), 8);
    QCOMPARE(version, (Bytes{'1', '.', '2', '.', '0', 0, 0, 0}));
    Bytes schema(4);
    QCOMPARE(client.control(0xC1, 0x29, 0, schema), 4);
    QCOMPARE(schema, (Bytes{5, 0, 0, 0}));
    Bytes page(74);
    QCOMPARE(client.control(0xC1, 0x27, 0, page), 74);
    QCOMPARE(std::string(page.begin() + 16, page.begin() + 24), std::string("Washer 7"));
    Bytes unknown(4);
    QCOMPARE(client.control(0xC1, 0x77, 0, unknown), static_cast<int>(LIBUSB_ERROR_PIPE));
    // The trace holds all of them, in order, with what became of them.
    const auto trace = unit->trace();
    QVERIFY(trace.size() >= 4);
    QCOMPARE(trace[trace.size() - 4].name, std::string("version"));
    QCOMPARE(trace.back().outcome, Answer::Kind::Stall);
}

void tst_virtualbus::hardTimes_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<unsigned>("value");
    QTest::addColumn<int>("result");
    using Action = Fault::Action;
    const auto row = [](const char* name, Action action, unsigned value, int result) {
        QTest::newRow(name) << static_cast<int>(action) << value << result;
    };
    row("stall", Action::Stall, 0, LIBUSB_ERROR_PIPE);
    row("silence", Action::Silence, 0, LIBUSB_ERROR_TIMEOUT);
    row("short answer", Action::ShortAnswer, 3, 3);
    row("late, yet in time", Action::Delay, 60, 8);
    row("too late", Action::Delay, 400, LIBUSB_ERROR_TIMEOUT);
    row("leaves", Action::LeaveBus, 0, LIBUSB_ERROR_NO_DEVICE);
}

void tst_virtualbus::hardTimes()
{
    QFETCH(int, action);
    QFETCH(unsigned, value);
    QFETCH(int, result);
    VirtualBus bus;
    const P_Unit unit = makeAquen();
    bus.plug(unit);
    UsbClient client;
    QCOMPARE(client.open(0x0C07), 0);
    // The second version request from here on.
    unit->addFault(Fault::on("version", static_cast<Fault::Action>(action), value, 2));
    Bytes before(8);
    QCOMPARE(client.control(0xC1, 0x24, 0, before, 200), 8);
    Bytes during(8);
    QCOMPARE(client.control(0xC1, 0x24, 0, during, 200), result);
    QTest::qWait(action == static_cast<int>(Fault::Action::Delay) ? 250 : 0);
    if (action == static_cast<int>(Fault::Action::LeaveBus)) {
        QVERIFY(bus.waitUntilPlugged(unit, milliseconds(3000)));
        QCOMPARE(bus.arrivals(unit), 2U);
        return;
    }
    Bytes after(8);
    QCOMPARE(client.control(0xC1, 0x24, 0, after, 200), 8);
}

void tst_virtualbus::claimedByAnother()
{
    VirtualBus bus;
    bus.plug(makeAquen());
    UsbClient first;
    UsbClient second;
    QCOMPARE(first.open(0x0C07), 0);
    QCOMPARE(second.open(0x0C07), static_cast<int>(LIBUSB_ERROR_BUSY));
    first.close();
    QTRY_COMPARE(second.open(0x0C07), 0);
}

void tst_virtualbus::dropToBootloaderAndBack()
{
    VirtualBus bus;
    const P_Unit unit = makeAquen();
    bus.plug(unit);
    const Address before = bus.address(unit);
    UsbClient client;
    QCOMPARE(client.open(0x0C07), 0);
    Bytes none;
    QCOMPARE(client.control(0x41, 0x26, 0, none), 0);
    QVERIFY(bus.waitUntilUnplugged(unit, milliseconds(3000)));
    client.close();
    QVERIFY(bus.waitUntilPlugged(unit, milliseconds(3000)));
    QVERIFY(bus.address(unit).device != before.device);
    QCOMPARE(unit->mode(), Mode::Bootloader);
    QTRY_COMPARE(client.open(0x0C05), 0);
    Bytes status(6);
    QCOMPARE(client.control(0xA1, 3, 0, status), 6);
    QCOMPARE(status, (Bytes{0, 0, 0, 0, 2, 0}));
    // The image in its flash is still whole: a power cycle brings the application back.
    client.close();
    bus.replug(unit);
    QVERIFY(bus.waitUntilPlugged(unit, milliseconds(3000)));
    QCOMPARE(unit->mode(), Mode::Application);
}

void tst_virtualbus::hotPlug()
{
    struct Counts
    {
        int arrived = 0;
        int left = 0;
    } counts;
    const auto callback = [](libusb_context*, libusb_device*, libusb_hotplug_event event,
                             void* data) {
        auto* seen = static_cast<Counts*>(data);
        ++(event == LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED ? seen->arrived : seen->left);
        return 0;
    };
    VirtualBus bus;
    UsbClient client;
    const auto events = LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED | LIBUSB_HOTPLUG_EVENT_DEVICE_LEFT;
    QCOMPARE(libusb_hotplug_register_callback(client.context(), events, 0, 0x16D0, 0x0C07,
                                              LIBUSB_HOTPLUG_MATCH_ANY, callback, &counts, nullptr),
             0);
    const auto pump = [&client] {
        timeval soon{0, 1000};
        libusb_handle_events_timeout_completed(client.context(), &soon, nullptr);
    };
    const P_Unit one = makeAquen();
    const P_Unit two = makeAquen();
    bus.plug(one);
    bus.plug(two);
    QTRY_VERIFY((pump(), counts.arrived == 2));
    bus.unplug(one);
    QTRY_VERIFY((pump(), counts.left == 1));
    QCOMPARE(client.count(0x0C07), 1);
    bus.plug(one);
    QTRY_VERIFY((pump(), counts.arrived == 3));
}

void tst_virtualbus::unplugEndsPendingTransfer()
{
    VirtualBus bus;
    const P_Unit unit = makeAquen();
    bus.plug(unit);
    UsbClient client;
    QCOMPARE(client.open(0x0C07), 0);
    unit->addFault(Fault::on("version", Fault::Action::Silence));
    std::thread puller([&bus, &unit] {
        std::this_thread::sleep_for(milliseconds(100));
        bus.unplug(unit);
    });
    QElapsedTimer timer;
    timer.start();
    Bytes version(8);
    const int result = client.control(0xC1, 0x24, 0, version, 5000);
    puller.join();
    QCOMPARE(result, static_cast<int>(LIBUSB_ERROR_NO_DEVICE));
    QVERIFY(timer.elapsed() < 2000);
    QVERIFY(client.control(0xC1, 0x24, 0, version, 500) < 0);
}

void tst_virtualbus::idleClientSleeps()
{
    VirtualBus bus;
    bus.plug(makeAquen());
    UsbClient client;
    QCOMPARE(client.open(0x0C07), 0);
    const std::clock_t before = std::clock();
    timeval half{0, 500000};
    libusb_handle_events_timeout_completed(client.context(), &half, nullptr);
    const double spent = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    QVERIFY2(spent < 0.1, qPrintable(QString::number(spent)));
}

void tst_virtualbus::clientOutlivesBus()
{
    auto bus = std::make_unique<VirtualBus>();
    bus->plug(makeAquen());
    UsbClient client;
    QCOMPARE(client.open(0x0C07), 0);
    bus.reset();
    Bytes version(8);
    QVERIFY(client.control(0xC1, 0x24, 0, version, 300) < 0);
}

void tst_virtualbus::manyClients()
{
    constexpr int transfers = 200;
    VirtualBus bus;
    const P_Unit units[] = {makeAquen(), makeAquen(), makeAquen()};
    for (const P_Unit& unit : units)
        bus.plug(unit);
    std::atomic<int> wrong{0};
    std::atomic<int> opened{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&wrong, &opened] {
            UsbClient client;
            client.open(0x0C07); // all of them the first one: the claim is the first comer's
            ++opened;
            for (int transfer = 0; transfer < transfers; ++transfer) {
                Bytes version(8);
                wrong += client.control(0xC1, 0x24, 0, version) == 8 ? 0 : 1;
            }
        });
    }
    // Arrivals and departures of others meanwhile; not before, or one of them could be opened.
    QTRY_COMPARE(opened.load(), 3);
    for (int i = 0; i < 10; ++i) {
        bus.unplug(units[1]);
        bus.plug(units[1]);
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(wrong.load(), 0);
}

QTEST_GUILESS_MAIN(tst_virtualbus)
#include "tst_virtualbus.moc"
