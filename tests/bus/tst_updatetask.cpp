// The update task as the user interface drives it, with bundles in this program's own resource
// directory and a virtual unit on the bus.
#include "Common/Paths.h"
#include "support/BusFixture.h"
#include "support/LogCapture.h"
#include "unit/FirmwareImage.h"
#include "update/AquenSolvarTaskFactory.h"

#include <QDir>
#include <QFile>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

using namespace AquenSolvar;
using namespace VirtualUnit;
using Task = Tasks::AquenSolvarFirmwareUpdateTask;

class tst_updatetask : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void bootloaderIsSetUp();
    void update();
    void noFirmware();
    void unitCannotBeSetUp_data();
    void unitCannotBeSetUp();
    void errorIsForwardedAndTheUnitIsFreeAgain();
    void stopUpdate();
    void taskGoesAwayWhileFlashing();

private:
    std::unique_ptr<Task> taskFor(const P_Unit& unit);
    void putBundle(const QString& name, qint32 version, const QByteArray& image);

    std::unique_ptr<BusFixture> m_bus;
    QDir m_firmwares;
};

void tst_updatetask::initTestCase()
{
    m_bus = std::make_unique<BusFixture>();
    m_firmwares = QDir(Common::Paths::resourceDirectory() + "/Firmwares");
}

void tst_updatetask::cleanup()
{
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
    m_firmwares.removeRecursively();
}

std::unique_ptr<Task> tst_updatetask::taskFor(const P_Unit& unit)
{
    const USB::P_LibUsbDevice record = m_bus->awaitRecord(unit->productId());
    Device::AquenSolvarDfuDevice bootloader(record);
    AquenSolvarTaskFactory factory;
    factory.setTimes({std::chrono::milliseconds(1)});
    return std::unique_ptr<Task>(factory.makeFirmwareUploadTask(&bootloader));
}

void tst_updatetask::putBundle(const QString& name, qint32 version, const QByteArray& image)
{
    QVERIFY(m_firmwares.mkpath("."));
    QFile file(m_firmwares.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(Device::packFirmwareBundle(version, image));
}

void tst_updatetask::bootloaderIsSetUp()
{
    const P_Unit unit = m_bus->plugBootloader(Kind::Solvar);
    LogCapture log({"DfuDevice"});
    Device::DfuDevice device(m_bus->awaitRecord(0x0C06));
    device.init();
    QCOMPARE(device.deviceType(), Device::DfuDevice::SOLVAR_DFU);
    QCOMPARE(device.transferSize(), quint16(2048));
    QCOMPARE(device.state(), qint32(Device::DFU_STATE_IDLE));
    QVERIFY(device.downloadCapable());
    const QMetaObject& meta = Device::DfuDevice::staticMetaObject;
    for (int i = QThread::staticMetaObject.propertyCount(); i < meta.propertyCount(); ++i)
        QVERIFY2(meta.property(i).read(&device).isValid(), meta.property(i).name());
    QCOMPARE(device.property("transferSize").toUInt(), 2048u);
    QCOMPARE(device.segments().size(), 2);
    QCOMPARE(device.segmentForAddress(0x08003800).pageSize, 2048u);
    QCOMPARE(log.messages(), QStringList());

    // An error state is met once with CLRSTATUS.
    device.dfuSpecialCommand(0, Device::ERASE_PAGE);
    QCOMPARE(unit->dfuState(), Dfu::State::Error);
    device.close();
    log.clear();
    device.init();
    QCOMPARE(unit->dfuState(), Dfu::State::Idle);
    QCOMPARE(log.messages(), QStringList("ERROR Error state, resetting"));

    unit->addFault(Fault::on("getstatus", Fault::Action::Stall));
    QVERIFY(!device.dfuGetStatus());
    QCOMPARE(device.status(), 14);
    QCOMPARE(device.state(), 10);
}

void tst_updatetask::update()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(5000, "1.3.1"));
    putBundle("aquen-v7.tarnware", 7, toByteArray(makeImage(5000, "1.0.0")));
    putBundle("aquen-v12.tarnware", 12, image);
    putBundle("solvar-v99.tarnware", 99, toByteArray(makeImage(5000, "9.9.9")));
    const auto task = taskFor(unit);
    QSignalSpy finished(task.get(), &Task::uploadFinsihed);
    QSignalSpy progress(task.get(), &Task::progressChanged);
    LogCapture log({"AquenSolvarFirmwareUpdateTask"});
    QVERIFY(task->uploadFirmware());
    QVERIFY(finished.wait());
    QCOMPARE(progress.count(), 3);
    QCOMPARE(task->progress(), 0.8192f);
    QVERIFY(log.contains("INFO", "Progress:  81.92"));
    QVERIFY(log.contains("INFO", "DFU download finished!"));
    QVERIFY(waitFor([&] { return unit->mode() == Mode::Application; }));
    QCOMPARE(toByteArray(unit->applicationContent()), image);
}

void tst_updatetask::noFirmware()
{
    const P_Unit unit = m_bus->plugBootloader();
    putBundle("solvar-v9.tarnware", 9, QByteArray(100, 'x'));
    LogCapture log({"AquenSolvarFirmwareUpdateTask"});
    const auto task = taskFor(unit);
    QVERIFY(!task->uploadFirmware());
    QVERIFY(log.contains("ERROR", "No firmware update to apply"));
    // Nothing keeps the unit from the next attempt.
    putBundle("aquen-v9.tarnware", 9, toByteArray(makeImage(3000, "1.3.1")));
    const auto next = taskFor(unit);
    QSignalSpy finished(next.get(), &Task::uploadFinsihed);
    QVERIFY(next->uploadFirmware());
    QVERIFY(finished.wait());
}

void tst_updatetask::unitCannotBeSetUp_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<bool>("unplugged");
    QTest::newRow("no layout string") << "string" << false;
    QTest::newRow("no configuration descriptor") << "descriptor" << false;
    QTest::newRow("unplugged before") << "" << true;
}

void tst_updatetask::unitCannotBeSetUp()
{
    QFETCH(QString, request);
    QFETCH(bool, unplugged);
    const P_Unit unit = m_bus->plugBootloader();
    putBundle("aquen-v9.tarnware", 9, QByteArray(100, 'x'));
    const auto task = taskFor(unit);
    if (unplugged) {
        m_bus->unplug(unit);
        QVERIFY(m_bus->awaitGone(0x0C05));
    } else {
        Fault fault = Fault::on(request.toStdString(), Fault::Action::Stall);
        fault.times = Fault::Forever;
        unit->addFault(fault);
    }
    QSignalSpy errors(task.get(), &Task::uploadError);
    LogCapture log({"AquenSolvarFirmwareUpdateTask"});
    QVERIFY(!task->uploadFirmware());
    QVERIFY(log.contains("ERROR", "Failed to set up USB device..."));
    QCOMPARE(errors.count(), 0);
}

void tst_updatetask::errorIsForwardedAndTheUnitIsFreeAgain()
{
    const P_Unit unit = m_bus->plugBootloader();
    putBundle("aquen-v9.tarnware", 9, toByteArray(makeImage(3000, "1.3.1")));
    const auto failing = taskFor(unit);
    unit->addFault(Fault::on("erase", Fault::Action::Stall));
    QSignalSpy errors(failing.get(), &Task::uploadError);
    QVERIFY(failing->uploadFirmware());
    QVERIFY(errors.wait());
    QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("Failed to erase flash."));
    QTest::qWait(50);
    // The failed task still exists, as it does while QML has not collected it.
    const auto resuming = taskFor(unit);
    QSignalSpy finished(resuming.get(), &Task::uploadFinsihed);
    QVERIFY(resuming->uploadFirmware());
    QVERIFY(finished.wait());
}

void tst_updatetask::stopUpdate()
{
    const P_Unit unit = m_bus->plugBootloader();
    putBundle("aquen-v9.tarnware", 9, toByteArray(makeImage(100000, "1.3.1")));
    const auto task = taskFor(unit);
    QSignalSpy progress(task.get(), &Task::progressChanged);
    QSignalSpy finished(task.get(), &Task::uploadFinsihed);
    QSignalSpy errors(task.get(), &Task::uploadError);
    // The stop must not come while a chunk is being written, where it ends as an error.
    unit->addFault(Fault::on("erase", Fault::Action::StayBusy, 100, 2));
    QVERIFY(task->uploadFirmware());
    QVERIFY(progress.wait());
    task->stopUpdate();
    QTest::qWait(50);
    QCOMPARE(finished.count() + errors.count(), 0);
    QVERIFY(unit->mode() == Mode::Bootloader);
}

void tst_updatetask::taskGoesAwayWhileFlashing()
{
    const P_Unit unit = m_bus->plugBootloader();
    const QByteArray image = toByteArray(makeImage(30000, "1.3.1"));
    putBundle("aquen-v9.tarnware", 9, image);
    auto task = taskFor(unit);
    QSignalSpy progress(task.get(), &Task::progressChanged);
    QVERIFY(task->uploadFirmware());
    QVERIFY(progress.wait());
    task.reset();
    QVERIFY(waitFor([&] { return unit->mode() == Mode::Application; }));
    QCOMPARE(toByteArray(unit->applicationContent()), image);
}

QTEST_GUILESS_MAIN(tst_updatetask)
#include "tst_updatetask.moc"
