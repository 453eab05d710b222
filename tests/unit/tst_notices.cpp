// SPDX-License-Identifier: LicenseRef-Proprietary
// What the window says beside "Quit": each notice comes, gives way to a more urgent one, and goes.
#include "Common/Paths.h"
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
    void mostUrgentFirst();
};

void tst_notices::mostUrgentFirst()
{
    const TempFiles files;
    QFile guide(GUIDE);
    QVERIFY(guide.open(QIODevice::ReadOnly));
    const QString headings = QString::fromUtf8(guide.readAll());
    const QString bundle = Common::Paths::resourceSubdirectory("Firmwares") + "/aquen-v1.tarnware";
    const auto record = USB::P_LibUsbDevice::create(); // no libusb device: nothing opens it
    record->descriptor.idProduct = 0x0C05;
    const auto unopened = USB::P_LibUsbDevice::create();
    unopened->descriptor.idProduct = 0x0C08;
    auto other = std::make_unique<InstanceGuard>(files.root());
    InstanceGuard guard(files.root());
    QVERIFY(other->checkIsFirst());
    auto log = std::make_unique<QsLogging::FileDestination>(files.root()); // is no file
    AquenSolvarWatcher watcher;
    ShippedFirmware firmware;
    Notices notices;
    notices.followFirmware(&firmware);
    notices.followGuard(&guard);
    connect(&watcher, &AquenSolvarWatcher::addedDFUDevice, &firmware, &ShippedFirmware::lookUp);

    const auto fail = [&](OpenFailure failure) {
        emit watcher.deviceNotOpened(unopened, failure);
    };
    const auto leave = [&] {
        emit watcher.unopenedDeviceLeft(unopened);
    };
    const auto activate = [] {
        emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    };
    const QString noFirmware = "No valid firmware for Aquen: an update would fail.";
    const QString copy = "Another copy of this program is running.";
    const QString noLog = "The log cannot be written.";
    const std::vector<std::pair<std::function<void()>, QString>> steps = {
        {[] {}, ""}, // nothing is shown before there is a watcher
        {[&] { notices.followWatcher(&watcher); }, copy},
        {[&] { watcher.cb_libusbDeviceAdded(record); }, noFirmware},
        {[&] { fail(openFailureOf(LIBUSB_ERROR_ACCESS)); },
         "Solvar found, but without permission to use it."},
        {leave, noFirmware},
        {[&] { fail(openFailureOf(LIBUSB_ERROR_BUSY)); },
         "Solvar found, but another program is using it."},
        {[&] { leave(), fail(openFailureOf(LIBUSB_ERROR_IO)); },
         "Solvar found, but it cannot be opened."},
        {[&] { leave(), fail(OpenFailure::NoDriver); }, "Solvar found, but its driver is missing."},
        {leave, noFirmware},
        {[&] { files.put(bundle, Device::packFirmwareBundle(10301, "image")), activate(); }, copy},
        {[&] { other.reset(), activate(); }, noLog},
        {[&] { QFile::remove(bundle), watcher.cb_libusbDeviceRemoved(record); }, noLog},
        {[&] { watcher.cb_libusbDeviceAdded(record); }, noFirmware},
        {[&] { watcher.cb_libusbDeviceRemoved(record); }, noLog},
        {[&] { log.reset(); }, ""},
    };
    QFile::remove(bundle);
    for (const auto& [step, text] : steps) {
        step();
        QTRY_COMPARE_WITH_TIMEOUT(notices.text(), text, 30000);
        const QString heading = "# " + notices.topic() + '\n';
        QVERIFY2(text.isEmpty() || headings.contains(heading), qPrintable(heading));
    }
}

QTEST_MAIN(tst_notices)
#include "tst_notices.moc"
