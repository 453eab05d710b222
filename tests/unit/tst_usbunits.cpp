// What the USB layer does without a bus.
#include "USB/I_USBNotifier.h"
#include "USB/LibusbDeviceEnumerator.h"
#include "USB/PFlibusb.h"
#include "USB/USBDevice.h"
#include "USB/USBException.h"
#include "USB/WindowsDeviceName.h"
#include "support/LogCapture.h"

#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QSignalSpy>
#include <QTest>

#include <sys/resource.h>

using namespace USB;

class tst_usbunits : public QObject
{
    Q_OBJECT

private slots:
    void windowsDeviceNames_data();
    void windowsDeviceNames();
    void listingNeedsASession();
    void deviceWithoutRecord();
    void enumeratorRefusals();
    void sessionThatCannotBeOpened();
    void listingThatFails();
};

void tst_usbunits::windowsDeviceNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::addColumn<int>("vid");
    QTest::addColumn<int>("pid");
    const QString tail = "#7&1&0&2#{a5dcbf10-6530-11d2-901f-00c04fb951ed}";
    QTest::newRow("upper case") << "\\\\?\\USB#VID_16D0&PID_0C07" + tail << true << 0x16D0
                                << 0x0C07;
    QTest::newRow("lower case") << "\\\\?\\usb#vid_16d0&pid_0c07" + tail << true << 0x16D0
                                << 0x0C07;
    QTest::newRow("the first counts") << "VID_0001&PID_0002VID_0003&PID_0004" << true << 1 << 2;
    QTest::newRow("no hexadecimal number reads as 0") << "VID_zzzz&PID_0C07" << true << 0 << 0x0C07;
    QTest::newRow("too short") << "VID_16D0&PID_0C" << false << 7 << 7;
    QTest::newRow("no ids") << "\\\\?\\STORAGE#Volume" << false << 7 << 7;
    QTest::newRow("empty") << "" << false << 7 << 7;
}

void tst_usbunits::windowsDeviceNames()
{
    QFETCH(QString, name);
    quint16 vid = 7;
    quint16 pid = 7;
    QTEST(parseWindowsDeviceName(name, vid, pid), "found");
    QTEST(int(vid), "vid");
    QTEST(int(pid), "pid");
}

void tst_usbunits::listingNeedsASession()
{
    LibUSB session;
    LogCapture log({"PFlibusb"});
    QElapsedTimer time;
    time.start();
    QVERIFY_EXCEPTION_THROWN(session.find_delayed(60000, 0, 0), USBException);
    QVERIFY_EXCEPTION_THROWN(session.find(0, 0), USBException);
    QVERIFY(time.elapsed() < 10000);
    const QString text = "WARN Can't list devices without libusb initialized";
    QCOMPARE(log.messages(), QStringList({text, text}));
}

void tst_usbunits::deviceWithoutRecord()
{
    USBDevice device(P_LibUsbDevice(), 1, 0);
    QCOMPARE(device.objectName(), QStringLiteral("usbThread"));
    try {
        device.init();
        QFAIL("opened nothing");
    } catch (const USBException& exception) {
        QCOMPARE(exception.message(), QStringLiteral("No usb device given"));
    }
    for (int twice = 0; twice < 2; ++twice)
        device.stop();
    QVERIFY_EXCEPTION_THROWN(device.controlRead(0xC0, 1, 0, 0, 8, 10), USBException);
    QVERIFY_EXCEPTION_THROWN(device.controlWrite(0x40, 1, 0, 0, "x", 10), USBException);
    QVERIFY_EXCEPTION_THROWN(device.getDescriptor(2, 0, 9), USBException);
    QVERIFY_EXCEPTION_THROWN(device.getStringDescriptor(1), USBException);
    QVERIFY_EXCEPTION_THROWN(device.setAlternateSetting(0), USBException);
}

void tst_usbunits::enumeratorRefusals()
{
    LogCapture log({"LibusbDeviceEnumerator"});
    {
        LibusbDeviceEnumerator enumerator;
        QVERIFY(!enumerator.init(nullptr));
        enumerator.requestEnumerateUSBDevices(0, 0);
        enumerator.on_QFutureWatcher_finished();
    }
    const QStringList expected = {
        "WARN Was not passed a handle to the application window",
        "WARN already enumerating, ignoring",
        "WARN enumeration finished but idle, ignoring",
    };
    QCOMPARE(log.messages(), expected);
}

// A process that has used up its file descriptors.
void tst_usbunits::sessionThatCannotBeOpened()
{
    LogCapture log({"LibusbDeviceEnumerator"});
    auto enumerator = std::make_unique<LibusbDeviceEnumerator>();
    QObject window;
    rlimit usual = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit none = {3, usual.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
    const bool opened = enumerator->init(&window);
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &usual), 0);
    QVERIFY(!opened);
    QCOMPARE(log.messages().size(), 1);
    QVERIFY(log.messages().first().startsWith(
        "WARN USB session could not be opened: \"Error initializing libusb: LIBUSB_ERROR_"));
    QVERIFY(enumerator->init(&window));
    enumerator.reset();
    LibUSB::instance().exit();
}

void tst_usbunits::listingThatFails()
{
    const QString failed = "Listing of the USB bus failed: Can't list devices";
    LogCapture log({"LibusbDeviceEnumerator"});
    auto enumerator = std::make_unique<LibusbDeviceEnumerator>();
    enumerator->setListingDelay(0);
    QObject window;
    QVERIFY(enumerator->init(&window));
    const auto list = [&] {
        QSignalSpy done(enumerator->findChildren<QFutureWatcherBase*>().last(),
                        &QFutureWatcherBase::finished);
        const bool isDone = done.wait(5000);
        QCoreApplication::processEvents(); // the enumerator hears of it in the next turn
        return isDone;
    };
    QVERIFY(list());
    delete enumerator
        ->findChild<I_USBNotifier*>(); // it would serve the events of the closed session
    LibUSB::instance().exit();
    for (int count = 1; count <= 2; ++count) {
        enumerator->requestEnumerateUSBDevices(0, 0);
        QVERIFY(list());
        QCOMPARE(log.messages().filter(failed).size(), count);
    }
    enumerator->requestEnumerateUSBDevices(0, 0);
    enumerator.reset(); // with the failure not yet noticed
    QCOMPARE(log.messages().size(), 3);
    QCOMPARE(log.messages().filter(failed).size(), 3);
}

QTEST_GUILESS_MAIN(tst_usbunits)
#include "tst_usbunits.moc"
