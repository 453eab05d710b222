// SPDX-License-Identifier: LicenseRef-Proprietary
// The watcher, the list of units and its order, with records and units made by the test.
#include "support/LogCapture.h"
#include "tracking/AquenSolvarFilterProxyModel.h"
#include "tracking/AquenSolvarListModel.h"

#include <QAbstractItemModelTester>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>

using namespace AquenSolvar;
using Device::I_Device;
using Device::P_I_Device;

struct FakeUnit : I_Device
{
    explicit FakeUnit(QString aName, int aSortOrder = 1)
        : name(std::move(aName))
        , order(aSortOrder)
    {
    }
    DeviceType deviceType() const override { return AQUEN; }
    QString serialName() const override { return name; }
    QString sectionName() const override { return "section of " + name; }
    int sortOrder() const override { return order; }
    bool needsUpdate() const override { return true; }
    bool isDfu() const override { return order == 0; }
    QString firmwareVersion() const override { return QString(); }
    QString port() const override { return QString(); }
    const QString name;
    const int order;
};

static QString names(const QAbstractItemModel& model)
{
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row)
        all << model.index(row, 0).data(257).value<I_Device*>()->serialName();
    return all.join(' ');
}

class tst_devicelist : public QObject
{
    Q_OBJECT

private slots:
    void listIsSortedByName()
    {
        LogCapture log({"AquenSolvarListModel"});
        AquenSolvarListModel model;
        QAbstractItemModelTester tester(&model);
        QSignalSpy count(&model, &AquenSolvarListModel::countChanged);
        QSignalSpy added(&model, &AquenSolvarListModel::addedDevice);
        for (const char* name : {"m", "z", "a", "m"})
            model.on_AqSolWatcher_addedDevice(P_I_Device(new FakeUnit(name)));
        QCOMPARE(names(model), QStringLiteral("a m z"));
        QVERIFY(added.count() == 3 && count.count() == 3 && model.property("count") == 3);
        QCOMPARE(model.index(2).data(258).toString(), QStringLiteral("section of z"));
        QCOMPARE(model.roleNames(), (QHash<int, QByteArray>{{257, "object"}, {258, "section"}}));
        model.on_AqSolWatcher_removedDevice(P_I_Device(new FakeUnit("never")));
        model.on_AqSolWatcher_removedDevice(P_I_Device(new FakeUnit("m"))); // the same, by name
        QCOMPARE(names(model), QStringLiteral("a z"));
        QCOMPARE(count.count(), 4);
        QCOMPARE(log.messages().filter("WARN").join('|'),
                 QStringLiteral("WARN Already know about this device with address \"m\"|"
                                "WARN Failed to insert device \"m\"|WARN Unknown device"));
    }

    // The source keeps the order of arrival.
    void proxySorts()
    {
        QStandardItemModel source;
        AquenSolvarFilterProxyModel proxy;
        proxy.setSourceModel(&source);
        QSignalSpy rows(&proxy, &AquenSolvarFilterProxyModel::rowCountChanged);
        std::list<FakeUnit> units;
        const auto arrive = [&](const QString& name, int sortOrder = 1) {
            I_Device* device = &units.emplace_back(name, sortOrder);
            auto* item = new QStandardItem;
            item->setData(QVariant::fromValue(device), 257);
            source.appendRow(item);
            return names(proxy);
        };
        QCOMPARE(arrive("b"), QStringLiteral("b"));
        QCOMPARE(arrive("a"), QStringLiteral("a b"));
        QCOMPARE(arrive("B"), QStringLiteral("B a b"));
        QCOMPARE(arrive("z", 0), QStringLiteral("z B a b"));
        source.removeRow(0);
        QCOMPARE(rows.count(), 5);
        // QML never owns a unit, and so never deletes one.
        QJSEngine engine;
        engine.newQObject(&units.front());
        QCOMPARE(QQmlEngine::objectOwnership(&units.front()), QQmlEngine::CppOwnership);
    }

    void watcherFollowsBootloaders()
    {
        LogCapture log({"AquenSolvarWatcher"});
        AquenSolvarWatcher watcher;
        AquenSolvarListModel model;
        model.addAqSolWatcher(&watcher);
        QSignalSpy dfu(&watcher, &AquenSolvarWatcher::addedDFUDevice);
        int listed = 0; // an update begins with the later signal
        connect(&watcher, &AquenSolvarWatcher::addedDFUDevice, [&] { listed = model.count(); });
        const auto solvar = USB::P_LibUsbDevice::create(); // no libusb device: nothing opens it
        const auto aquen = USB::P_LibUsbDevice::create();
        solvar->descriptor.idProduct = 0x0C06;
        aquen->descriptor.idProduct = 0x0C05;
        QVERIFY(!watcher.cb_libusbDeviceAdded(USB::P_LibUsbDevice::create()));
        QVERIFY(!watcher.cb_libusbDeviceAdded(solvar));
        QCOMPARE(names(model), QStringLiteral("Solvar (Update)"));
        QCOMPARE(listed, 1);
        const auto* device = dfu.value(0).value(0).value<I_Device*>();
        QVERIFY(device && device->deviceType() == 3 && device->needsUpdate() && device->isDfu());
        QVERIFY(device->sectionName() == "DFU Devices" && device->sortOrder() == 0);
        QVERIFY(watcher.cb_libusbDeviceRemoved(solvar) && !watcher.cb_libusbDeviceRemoved(solvar));
        QCOMPARE(model.count(), 0);
        QVERIFY(!watcher.cb_libusbDeviceAdded(aquen));
        QCOMPARE(names(model), QStringLiteral("Aquen (Update)"));
        QVERIFY(!watcher.init(nullptr));
        QCOMPARE(log.messages().filter("Solvar"),
                 QStringList({"INFO Solvar (DFU) detected...", "INFO Solvar (DFU) removed..."}));
    }
};

QTEST_GUILESS_MAIN(tst_devicelist)
#include "tst_devicelist.moc"
