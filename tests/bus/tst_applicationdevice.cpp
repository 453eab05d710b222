// The unit in application mode and the watcher that makes it, on a bus of virtual units.
#include "devices/AquenSolvarDevice.h"
#include "support/BusFixture.h"
#include "support/LogCapture.h"
#include "tracking/AquenSolvarWatcher.h"

#include <QSignalSpy>
#include <QTest>

using namespace AquenSolvar::Device;
using VirtualUnit::Fault;
using VirtualUnit::Kind;
using VirtualUnit::Mode;
using VirtualUnit::Overrides;
using VirtualUnit::P_Unit;
using Action = VirtualUnit::Fault::Action;

class tst_applicationdevice : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void loads_data();
    void loads();
    void failures_data();
    void failures();
    void anotherProductIsOpenedAndNotAsked();
    void dropToBootloader();
    void watcherSurvivesUnitsThatCannotBeOpened();

private:
    std::unique_ptr<BusFixture> m_bus;
};

void tst_applicationdevice::initTestCase()
{
    m_bus = std::make_unique<BusFixture>();
}

void tst_applicationdevice::cleanup()
{
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
}

void tst_applicationdevice::loads_data()
{
    QTest::addColumn<int>("schema");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("pageLength");
    QTest::addColumn<bool>("needsUpdate");
    QTest::newRow("schema 4, old") << 4 << "1.2.0" << 64 << true;
    QTest::newRow("schema 5, current") << 5 << "1.3.1" << 74 << false;
}

void tst_applicationdevice::loads()
{
    QFETCH(int, schema);
    QFETCH(QString, firmware);
    QFETCH(int, pageLength);
    const P_Unit unit =
        m_bus->plugApplication("W\xc3\xa4sche 7", firmware.toStdString(), Kind::Solvar);
    unit->adjust([&](Overrides& overrides) { overrides.schemaVersion = std::uint32_t(schema); });
    const USB::P_LibUsbDevice record = m_bus->awaitRecord(0x0C08);
    unit->clearTrace();
    AquenSolvarDevice device(record);
    QCOMPARE(device.deviceType(), I_Device::SOLVAR);
    QCOMPARE(device.serialName(), QString::fromUtf8("W\xc3\xa4sche 7"));
    QCOMPARE(device.firmwareVersion(), firmware);
    QCOMPARE(device.sectionName(), QStringLiteral("Devices"));
    QCOMPARE(device.sortOrder(), 1);
    QVERIFY(!device.isDfu());
    QTEST(device.needsUpdate(), "needsUpdate");

    QStringList sent;
    for (const VirtualUnit::TraceEntry& entry : unit->trace()) {
        if (entry.setup.isVendor())
            sent << QStringLiteral("%1 %2 %3")
                        .arg(entry.setup.bmRequestType, 0, 16)
                        .arg(entry.setup.bRequest, 0, 16)
                        .arg(entry.setup.wLength);
    }
    QCOMPARE(sent, QStringList({"c1 29 4", QStringLiteral("c1 27 %1").arg(pageLength), "c1 24 8",
                                "c1 25 64"}));
}

void tst_applicationdevice::failures_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<int>("schema");
    QTest::addColumn<QString>("cause");
    QTest::addColumn<QString>("consequence");
    QTest::addColumn<QString>("serial");
    QTest::newRow("schema version") << "schema" << 5 << "Failed to read schema version:"
                                    << "Failed to load schema version"
                                    << "";
    QTest::newRow("configuration") << "config" << 5 << "Failed to read config:"
                                   << "Failed to load config page"
                                   << "Unknown Device";
    QTest::newRow("unknown schema") << "" << 6 << "Unable to read configuration."
                                    << "Failed to load config page"
                                    << "";
    QTest::newRow("schema beyond an int") << "" << -1 << "Unable to read configuration."
                                          << "Failed to load config page"
                                          << "";
    QTest::newRow("version") << "version" << 5 << "Failed to load firmware version:"
                             << "Failed to load firmware version"
                             << "Wash 7";
    QTest::newRow("revision") << "revision" << 5 << "Failed to load firmware revision:"
                              << "Failed to load firmware revision"
                              << "Wash 7";
}

void tst_applicationdevice::failures()
{
    QFETCH(QString, request);
    QFETCH(int, schema);
    QFETCH(QString, cause);
    QFETCH(QString, consequence);
    const P_Unit unit = m_bus->plugApplication("Wash 7", "1.3.1");
    unit->adjust([&](Overrides& overrides) { overrides.schemaVersion = std::uint32_t(schema); });
    const USB::P_LibUsbDevice record = m_bus->awaitRecord(0x0C07);
    if (!request.isEmpty())
        unit->addFault(Fault::on(request.toStdString(), Action::Stall));
    LogCapture log({"AquenSolvarDevice"});
    AquenSolvarDevice device(record);
    QTEST(device.serialName(), "serial");
    QVERIFY(!device.needsUpdate());
    const QStringList errors = log.messages().filter("ERROR");
    QCOMPARE(errors.size(), 2);
    QVERIFY2(errors[0].contains(cause), qPrintable(errors[0]));
    QCOMPARE(errors[1], "ERROR " + consequence);
}

void tst_applicationdevice::anotherProductIsOpenedAndNotAsked()
{
    const P_Unit unit = m_bus->plugBootloader();
    const USB::P_LibUsbDevice record = m_bus->awaitRecord(0x0C05);
    unit->clearTrace();
    LogCapture log({"AquenSolvarDevice"});
    const AquenSolvarDevice device(record);
    for (const VirtualUnit::TraceEntry& entry : unit->trace())
        QVERIFY2(!entry.setup.isVendor(), entry.name.c_str());
    QCOMPARE(device.deviceType(), I_Device::UNKNOWN);
    QCOMPARE(device.serialName(), QString());
    QVERIFY(!device.needsUpdate());
    QCOMPARE(log.messages(), QStringList());
}

void tst_applicationdevice::dropToBootloader()
{
    const P_Unit unit = m_bus->plugApplication("Wash 7", "1.2.0");
    AquenSolvarDevice device(m_bus->awaitRecord(0x0C07));
    LogCapture log({"AquenSolvarDevice"});
    unit->addFault(Fault::on("drop", Action::Stall));
    QVERIFY(!device.dropToBootloader());
    QVERIFY(log.contains("ERROR", "Failed to reset device into bootloader:"));
    QVERIFY(unit->mode() == Mode::Application);
    QVERIFY(device.dropToBootloader());
    QVERIFY(log.contains("INFO", "Result of drop to bootloader: 0"));
    QVERIFY(m_bus->awaitRecord(0x0C05));
    QVERIFY(!device.dropToBootloader()); // it has left
}

void tst_applicationdevice::watcherSurvivesUnitsThatCannotBeOpened()
{
    const P_Unit unit = m_bus->plugApplication("Wash 7", "1.2.0");
    const USB::P_LibUsbDevice record = m_bus->awaitRecord(0x0C07);
    m_bus->unplug(unit);
    QVERIFY(m_bus->awaitGone(0x0C07));
    AquenSolvar::AquenSolvarWatcher watcher;
    QSignalSpy added(&watcher, &AquenSolvar::AquenSolvarWatcher::addedDevice);
    LogCapture log({"AquenSolvarWatcher"});
    QVERIFY(!watcher.cb_libusbDeviceAdded(record));
    QVERIFY(!watcher.cb_libusbDeviceRemoved(record));
    QCOMPARE(added.count(), 0);
    QVERIFY(log.contains("ERROR", "Could not open the Aquen on port"));
}

QTEST_GUILESS_MAIN(tst_applicationdevice)
#include "tst_applicationdevice.moc"
