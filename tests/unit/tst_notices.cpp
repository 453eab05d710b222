// SPDX-License-Identifier: LicenseRef-Proprietary
// What the window says beside "Quit": each notice comes, gives way to a more urgent one, and goes.
#include "firmware/FirmwareBundle.h"
#include "qslog/FileDestination.h"
#include "shell/InstanceGuard.h"
#include "shell/Notices.h"
#include "support/TempFiles.h"
#include "update/ShippedFirmware.h"

#include <QGuiApplication>

using namespace AquenSolvar;

class tst_notices : public QObject
{
    Q_OBJECT

private slots:
    void mostUrgentFirst()
    {
        const TempFiles files;
        QFile guideFile(GUIDE);
        QVERIFY(guideFile.open(QIODevice::ReadOnly));
        const QByteArray guide = guideFile.readAll();
        const QString file = qApp->applicationDirPath() + "/Resources/Firmwares/aquen-v1.tarnware";
        const auto unit = USB::P_LibUsbDevice::create(); // no libusb device: nothing opens it
        unit->descriptor.idProduct = 0x0C05;
        auto other = std::make_unique<InstanceGuard>(files.root());
        InstanceGuard guard(files.root());
        QVERIFY(other->checkIsFirst() && (QFile::remove(file) || !QFile::exists(file)));
        const QByteArray lock = files.get("running.lock");
        other = std::make_unique<InstanceGuard>(files.root());
        files.put("running.lock", lock); // of a dead process whose number this one got
        QVERIFY(other->checkIsFirst());
        auto log = std::make_unique<QsLogging::FileDestination>(files.root()); // is no file
        AquenSolvarWatcher watcher;
        ShippedFirmware firmware;
        Notices notices;
        notices.followFirmware(&firmware);
        notices.followGuard(&guard);
        connect(&watcher, &AquenSolvarWatcher::addedDFUDevice, &firmware, &ShippedFirmware::lookUp);

        const QString noFirmware = "No valid firmware for Aquen: an update would fail.";
        const QString copy = "Another copy of this program is running.";
        const QString noLog = "The log cannot be written.";
        const QString busy = "Aquen found, but another program is using it.";
        const std::vector<std::pair<std::function<void()>, QString>> steps = {
            {[] {}, ""}, // nothing is shown before there is a watcher
            {[&] { notices.followWatcher(&watcher); }, copy},
            {[&] { watcher.cb_libusbDeviceAdded(unit); }, copy},
            {[] {}, noFirmware}, // looked up
            {[&] { watcher.deviceNotOpened(unit, openFailureOf(LIBUSB_ERROR_BUSY)); }, busy},
            {[&] { watcher.unopenedDeviceLeft(unit); }, noFirmware},
            {[&] { files.put(file, Device::packFirmwareBundle(1, "image")); }, noFirmware},
            {[&] { qApp->applicationStateChanged(Qt::ApplicationActive); }, copy},
            {[&] { other.reset(), qApp->applicationStateChanged(Qt::ApplicationActive); }, noLog},
            {[&] { QFile::remove(file), watcher.cb_libusbDeviceRemoved(unit); }, noLog},
            {[&] { watcher.cb_libusbDeviceAdded(unit); }, noFirmware},
            {[&] { watcher.cb_libusbDeviceRemoved(unit); }, noLog},
            {[&] { log.reset(); }, ""},
        };
        for (const auto& [step, text] : steps) {
            step();
            QTRY_COMPARE_WITH_TIMEOUT(notices.text(), text, 30000);
            const QByteArray heading = "# " + notices.topic().toUtf8() + '\n';
            QVERIFY2(text.isEmpty() || guide.contains(heading), heading);
        }
    }
};

QTEST_MAIN(tst_notices)
#include "tst_notices.moc"
