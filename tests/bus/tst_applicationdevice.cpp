// SPDX-License-Identifier: LicenseRef-Proprietary
// The unit in application mode, on a bus of virtual units.
#include "devices/AquenSolvarDevice.h"
#include "support/BusFixture.h"
#include "support/LogCapture.h"
#include "tracking/AquenSolvarWatcher.h"

#include <QTest>

using namespace AquenSolvar::Device;
using VirtualUnit::Fault;

class tst_applicationdevice : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        m_bus.unplugAll();
        QVERIFY(m_bus.awaitGone(0));
    }

    void reads_data()
    {
        QTest::addColumn<unsigned>("schema");
        QTest::addColumn<QString>("requests");
        QTest::newRow("1.2.0") << 4u << "schema 4, config 64, version 8, revision 64";
        QTest::newRow("1.3.1") << 5u << "schema 4, config 74, version 8, revision 64";
    }
    void reads()
    {
        QFETCH(unsigned, schema);
        const QString firmware = QTest::currentDataTag();
        const auto unit =
            m_bus.plugApplication("W\xc3\xa4", firmware.toStdString(), VirtualUnit::Kind::Solvar);
        unit->adjust([=](auto& overrides) { overrides.schemaVersion = schema; });
        const USB::P_LibUsbDevice record = m_bus.awaitRecord(0x0C08);
        unit->clearTrace();
        if (schema == 4) // slow, as it may be
            unit->addFault(Fault::on("config", Fault::Action::Delay, 1200));
        const AquenSolvarDevice device(record);
        QStringList sent;
        for (const VirtualUnit::TraceEntry& entry : unit->trace()) {
            if (entry.setup.type() == VirtualUnit::SetupPacket::Vendor)
                sent << QStringLiteral("%1 %2").arg(entry.name.c_str()).arg(entry.setup.wLength);
        }
        QTEST(sent.join(", "), "requests");
        QCOMPARE(device.serialName(), QString::fromUtf8("W\xc3\xa4"));
        QCOMPARE(device.firmwareVersion(), firmware);
        QVERIFY(!device.firmwareRevision().isEmpty());
        QCOMPARE(device.sectionName(), QStringLiteral("Devices"));
        QVERIFY(device.deviceType() == 2 && device.sortOrder() == 1 && !device.isDfu());
        QCOMPARE(device.needsUpdate(), schema == 4);
    }

    void failures_data()
    {
        QTest::addColumn<QStringList>("texts"); // what failed, what is missing, the serial name
        QTest::newRow("schema") << QStringList({"read schema version", "schema version", ""});
        QTest::newRow("config") << QStringList({"read config", "config page", "Unknown Device"});
        QTest::newRow("version") << QStringList({"load firmware version", "firmware version", "W"});
        QTest::newRow("revision") << QStringList(
            {"load firmware revision", "firmware revision", "W"});
    }
    void failures()
    {
        const auto unit = m_bus.plugApplication("W", "1.3.1");
        const USB::P_LibUsbDevice record = m_bus.awaitRecord(0x0C07);
        unit->addFault(Fault::on(QTest::currentDataTag(), Fault::Action::Stall));
        LogCapture log({"AquenSolvarDevice"});
        const AquenSolvarDevice device(record);
        QFETCH(QStringList, texts);
        const QString cause = "Failed to %1: Control transfer error: LIBUSB_ERROR_PIPE";
        QVERIFY(log.contains("ERROR", cause.arg(texts[0])));
        QVERIFY(log.messages().contains("ERROR Failed to load " + texts[1]));
        QCOMPARE(device.serialName(), texts[2]);
    }

    void dropToBootloader()
    {
        const auto unit = m_bus.plugApplication("W", "1.2.0");
        unit->adjust([](auto& overrides) { overrides.schemaVersion = 6; });
        const USB::P_LibUsbDevice record = m_bus.awaitRecord(0x0C07);
        LogCapture log({"AquenSolvarDevice", "AquenSolvarWatcher"});
        AquenSolvarDevice device(record);
        QVERIFY(log.contains("ERROR", "Unable to read configuration."));
        unit->addFault(Fault::on("drop", Fault::Action::Stall));
        QVERIFY(!device.dropToBootloader());
        const QString cause = "bootloader: control write error: LIBUSB_ERROR_PIPE";
        QVERIFY(log.contains("ERROR", "Failed to reset device into " + cause));
        QVERIFY(device.dropToBootloader());
        QVERIFY(log.contains("INFO", "Result of drop to bootloader: 0"));
        QVERIFY(m_bus.awaitRecord(0x0C05));
        m_bus.unplugAll();
        QVERIFY(m_bus.awaitGone(0)); // what is gone cannot be opened
        QVERIFY(!AquenSolvar::AquenSolvarWatcher().cb_libusbDeviceAdded(record));
        QVERIFY(log.contains("ERROR", "Could not open the Aquen on port \"1-"));
    }

private:
    BusFixture m_bus;
};

QTEST_GUILESS_MAIN(tst_applicationdevice)
#include "tst_applicationdevice.moc"
