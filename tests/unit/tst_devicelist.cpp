// The watcher, the list of units and its order, fed with records and units made by the test.
#include "devices/AquenSolvarDfuDevice.h"
#include "support/LogCapture.h"
#include "tracking/AquenSolvarFilterProxyModel.h"
#include "tracking/AquenSolvarListModel.h"
#include "tracking/AquenSolvarWatcher.h"
#include "update/AquenSolvarTaskFactory.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace AquenSolvar;
using Device::I_Device;
using Device::P_I_Device;

namespace {

class FakeUnit : public I_Device
{
public:
    FakeUnit(QString name, bool dfu)
        : m_name(std::move(name))
        , m_dfu(dfu)
    {
    }
    DeviceType deviceType() const override { return m_dfu ? AQUEN_DFU : AQUEN; }
    QString serialName() const override { return m_name; }
    QString sectionName() const override { return m_dfu ? "DFU Devices" : "Devices"; }
    int sortOrder() const override { return m_dfu ? 0 : 1; }
    bool needsUpdate() const override { return true; }
    bool isDfu() const override { return m_dfu; }

private:
    QString m_name;
    bool m_dfu;
};

P_I_Device unit(const QString& name, bool dfu = false)
{
    return P_I_Device(new FakeUnit(name, dfu));
}

// A record without a libusb device: enough for whatever opens nothing.
USB::P_LibUsbDevice record(quint16 productId)
{
    auto made = USB::P_LibUsbDevice(new USB::LibUsbDevice, &USB::releaseLibUsbDevice);
    made->descriptor.idVendor = 0x16D0;
    made->descriptor.idProduct = productId;
    return made;
}

QStringList names(const QAbstractItemModel& model)
{
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row)
        all << model.data(model.index(row, 0), 257).value<I_Device*>()->serialName();
    return all;
}

} // namespace

class tst_devicelist : public QObject
{
    Q_OBJECT

private slots:
    void listKeepsUnitsByName();
    void listRefusesAndForgets();
    void proxyOrders();
    void proxyComparison_data();
    void proxyComparison();
    void proxyWithoutDevices();
    void watcherAnnouncesBootloaders();
    void watcherIgnoresOthers();
    void twoBootloadersOfAKind();
    void factoryWithoutDevice();
};

void tst_devicelist::listKeepsUnitsByName()
{
    AquenSolvarListModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(&model, &AquenSolvarListModel::countChanged);
    QSignalSpy added(&model, &AquenSolvarListModel::addedDevice);
    QStringList order;
    connect(&model, &QAbstractItemModel::dataChanged, this, [&](auto, auto, const auto& roles) {
        order << QStringLiteral("data%1").arg(roles.size());
    });
    connect(&model, &AquenSolvarListModel::countChanged, this, [&] { order << "count"; });
    connect(&model, &AquenSolvarListModel::addedDevice, this, [&] { order << "added"; });

    for (const char* name : {"m", "z", "a"})
        QVERIFY(model.insertDevice(unit(name)));
    QCOMPARE(names(model), QStringList({"a", "m", "z"}));
    QCOMPARE(inserted.at(2).at(1).toInt(), 0);
    QCOMPARE(changed.count(), 3);
    QCOMPARE(added.count(), 3);
    QCOMPARE(order.mid(0, 3), QStringList({"data0", "count", "added"}));
    QCOMPARE(model.data(model.index(0, 0), 258).toString(), QStringLiteral("Devices"));
    QCOMPARE(model.roleNames().value(257), QByteArray("object"));
    QCOMPARE(model.roleNames().value(258), QByteArray("section"));
    QVERIFY(!model.data(model.index(3, 0), 257).isValid());
}

void tst_devicelist::listRefusesAndForgets()
{
    LogCapture log({"AquenSolvarListModel"});
    AquenSolvarListModel model;
    model.insertDevice(unit("same"));
    QSignalSpy changed(&model, &AquenSolvarListModel::countChanged);
    model.on_AqSolWatcher_addedDevice(unit("same"));
    QCOMPARE(model.count(), 1);
    QCOMPARE(changed.count(), 0);
    const QStringList expected = {
        "WARN Already know about this device with address \"same\"",
        "WARN Failed to insert device \"same\"",
    };
    QCOMPARE(log.messages().mid(2), expected);

    QVERIFY(!model.removeDevice(unit("never")));
    QVERIFY(log.contains("WARN", "Unknown device"));
    QVERIFY(model.removeDevice(unit("same"))); // the name is the identity
    QCOMPARE(model.count(), 0);
    QCOMPARE(changed.count(), 1);
}

void tst_devicelist::proxyOrders()
{
    AquenSolvarListModel model;
    AquenSolvarFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    proxy.setDynamicSortFilter(true);
    QSignalSpy rows(&proxy, &AquenSolvarFilterProxyModel::rowCountChanged);
    model.insertDevice(unit("b"));
    model.insertDevice(unit("a"));
    const P_I_Device bootloader = unit("a (Update)", true);
    model.insertDevice(bootloader);
    QCOMPARE(rows.count(), 3);
    QCOMPARE(names(proxy).indexOf("a") < names(proxy).indexOf("b"), true);
    model.removeDevice(bootloader);
    QCOMPARE(rows.count(), 4);
    QCOMPARE(names(proxy), QStringList({"a", "b"}));
}

void tst_devicelist::proxyComparison_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<bool>("leftDfu");
    QTest::addColumn<QString>("right");
    QTest::addColumn<bool>("rightDfu");
    QTest::addColumn<bool>("less");
    QTest::newRow("names decide in one kind") << "a" << false << "b" << false << true;
    QTest::newRow("names are case-sensitive") << "a" << false << "B" << false << false;
    QTest::newRow("bootloader on the left") << "z" << true << "a" << false << true;
    QTest::newRow("bootloader on the right, smaller name") << "a" << false << "z" << true << true;
    QTest::newRow("bootloader on the right, greater name") << "z" << false << "a" << true << false;
}

void tst_devicelist::proxyComparison()
{
    struct Proxy : AquenSolvarFilterProxyModel
    {
        using AquenSolvarFilterProxyModel::lessThan;
    } proxy;
    QFETCH(QString, left);
    QFETCH(bool, leftDfu);
    QFETCH(QString, right);
    QFETCH(bool, rightDfu);
    AquenSolvarListModel leftModel;
    AquenSolvarListModel rightModel;
    leftModel.insertDevice(unit(left, leftDfu));
    rightModel.insertDevice(unit(right, rightDfu));
    QTEST(proxy.lessThan(leftModel.index(0), rightModel.index(0)), "less");

    LogCapture log({"AquenSolvarFilterProxyModel"});
    QVERIFY(!proxy.lessThan(leftModel.index(0), QModelIndex()));
    QVERIFY(!proxy.lessThan(QModelIndex(), rightModel.index(0)));
    QCOMPARE(log.messages(), QStringList({"ERROR Got NULL devices", "ERROR Got NULL devices"}));
}

void tst_devicelist::proxyWithoutDevices()
{
    AquenSolvarFilterProxyModel proxy;
    AquenSolvarListModel model;
    proxy.setSourceModel(&model);
    QCOMPARE(proxy.rowCount(), 0);
}

void tst_devicelist::watcherAnnouncesBootloaders()
{
    AquenSolvarWatcher watcher;
    QStringList order;
    P_I_Device announced;
    connect(&watcher, &AquenSolvarWatcher::addedDevice, this, [&](const P_I_Device& device) {
        announced = device;
        order << "added " + device->serialName();
    });
    connect(&watcher, &AquenSolvarWatcher::addedDFUDevice, this, [&](I_Device* device) {
        QCOMPARE(device, announced.data());
        order << "dfu";
    });
    connect(&watcher, &AquenSolvarWatcher::removedDevice, this, [&](const P_I_Device& device) {
        QCOMPARE(device, announced);
        order << "removed";
    });
    LogCapture log({"AquenSolvarWatcher"});
    const USB::P_LibUsbDevice solvar = record(0x0C06);
    QVERIFY(!watcher.cb_libusbDeviceAdded(solvar));
    QCOMPARE(int(announced->deviceType()), 3);
    QCOMPARE(announced->sectionName(), QStringLiteral("DFU Devices"));
    QVERIFY(announced->needsUpdate() && announced->isDfu() && announced->sortOrder() == 0);
    QVERIFY(watcher.cb_libusbDeviceRemoved(solvar));
    QVERIFY(!watcher.cb_libusbDeviceRemoved(solvar));
    QCOMPARE(order, QStringList({"added Solvar (Update)", "dfu", "removed"}));
    const QStringList expected = {
        "INFO Found: 5840 3078",
        "INFO Solvar (DFU) detected...",
        "INFO USB device removed... 5840 3078",
        "INFO Solvar (DFU) removed...",
        "INFO USB device removed... 5840 3078",
    };
    QCOMPARE(log.messages(), expected);
}

void tst_devicelist::watcherIgnoresOthers()
{
    AquenSolvarWatcher watcher;
    QSignalSpy added(&watcher, &AquenSolvarWatcher::addedDevice);
    QSignalSpy removed(&watcher, &AquenSolvarWatcher::removedDevice);
    for (const int id : {0x07EB, 0x07FB, 0x0A14, 0x0A15}) {
        const USB::P_LibUsbDevice other = record(quint16(id));
        QVERIFY(!watcher.cb_libusbDeviceAdded(other));
        QVERIFY(!watcher.cb_libusbDeviceRemoved(other));
    }
    QVERIFY(!watcher.cb_libusbDeviceRemoved(record(0x0C05))); // never arrived
    QCOMPARE(added.count() + removed.count(), 0);
    QVERIFY(!watcher.init(nullptr));
}

void tst_devicelist::twoBootloadersOfAKind()
{
    AquenSolvarWatcher watcher;
    AquenSolvarListModel model;
    model.addAqSolWatcher(&watcher);
    QSignalSpy added(&watcher, &AquenSolvarWatcher::addedDevice);
    const USB::P_LibUsbDevice first = record(0x0C05);
    const USB::P_LibUsbDevice second = record(0x0C05);
    watcher.cb_libusbDeviceAdded(first);
    watcher.cb_libusbDeviceAdded(second);
    QCOMPARE(added.count(), 2);
    QCOMPARE(names(model), QStringList("Aquen (Update)")); // the label is their only name
    QVERIFY(watcher.cb_libusbDeviceRemoved(second));
    QCOMPARE(model.count(), 0);
    QVERIFY(watcher.cb_libusbDeviceRemoved(first));
}

void tst_devicelist::factoryWithoutDevice()
{
    AquenSolvarTaskFactory factory;
    const std::unique_ptr<Tasks::AquenSolvarFirmwareUpdateTask> task(
        factory.makeFirmwareUploadTask(nullptr));
    LogCapture log({"AquenSolvarFirmwareUpdateTask"});
    QSignalSpy progress(task.get(), &Tasks::AquenSolvarFirmwareUpdateTask::progressChanged);
    QVERIFY(!task->uploadFirmware());
    QVERIFY(log.contains("ERROR", "Failed to set up USB device..."));
    task->stopUpdate();
    task->resetProgress();
    QCOMPARE(progress.count(), 1);
}

QTEST_GUILESS_MAIN(tst_devicelist)
#include "tst_devicelist.moc"
