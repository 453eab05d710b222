// SPDX-License-Identifier: LicenseRef-Proprietary
// The USB layer: session, opened devices, notifications and the enumerator.
#include "USB/LibusbDeviceEnumerator.h"
#include "USB/LibusbUSBNotifier.h"
#include "USB/PFlibusb.h"
#include "USB/USBDevice.h"
#include "USB/USBException.h"
#include "support/BusFixture.h"
#include "support/LogCapture.h"

#include <QSignalSpy>
#include <QTest>

#include <thread>

#include <dlfcn.h>
#include <sys/resource.h>

using namespace USB;

static bool registrationFails = false;

// Takes the place of libusb's function in this program.
int LIBUSB_CALL libusb_hotplug_register_callback(libusb_context* context, int events, int flags,
                                                 int vendor, int product, int deviceClass,
                                                 libusb_hotplug_callback_fn callback, void* data,
                                                 libusb_hotplug_callback_handle* handle)
{
    if (registrationFails) {
        *handle = 1;
        return LIBUSB_ERROR_NO_MEM;
    }
    static const auto real = reinterpret_cast<decltype(&libusb_hotplug_register_callback)>(
        dlsym(RTLD_NEXT, "libusb_hotplug_register_callback"));
    return real(context, events, flags, vendor, product, deviceClass, callback, data, handle);
}

struct Listener : LibusbDeviceEnumeratorListener
{
    bool cb_libusbDeviceAdded(P_LibUsbDevice device) override { return note("+", *device); }
    bool cb_libusbDeviceRemoved(P_LibUsbDevice device) override { return note("-", *device); }
    bool note(const QString& what, const LibUsbDevice& device)
    {
        calls << what + QString::number(device.descriptor.idProduct, 16);
        return takes;
    }
    QStringList calls;
    bool takes = false;
};

template <typename Call>
static QString messageOf(Call&& call)
{
    try {
        call();
    } catch (const USBException& exception) {
        return exception.message();
    }
    return QStringLiteral("nothing thrown");
}

class tst_usbbus : public QObject
{
    Q_OBJECT

private slots:
    // Before anything opens the session: a process that has used up its file descriptors.
    void initTestCase()
    {
        LogCapture log({"LibusbDeviceEnumerator"});
        LibusbDeviceEnumerator enumerator;
        rlimit usual = {};
        getrlimit(RLIMIT_NOFILE, &usual);
        const rlimit none = {3, usual.rlim_max};
        // UBSan needs descriptors when it meets a class for the first time.
        QVERIFY(!enumerator.init(nullptr));
        QCOMPARE(messageOf([] { throw USBException("met"); }), QString("met"));
        setrlimit(RLIMIT_NOFILE, &none);
        const bool opened = enumerator.init(this);
        setrlimit(RLIMIT_NOFILE, &usual);
        QVERIFY(!opened);
        QVERIFY(log.contains("WARN", "could not be opened: \"Error initializing libusb: LIBUSB_"));
        m_bus = std::make_unique<BusFixture>();
    }

    void cleanup()
    {
        m_bus->unplugAll();
        QVERIFY(m_bus->awaitGone(0));
    }

    void transfers()
    {
        const auto unit = m_bus->plugApplication("Wash 7", "1.2.0");
        const P_LibUsbDevice record = m_bus->awaitRecord(0x0C07);
        QCOMPARE(portPath(*record), QStringLiteral("1-1"));
        USBDevice device(record, 1, 0);
        device.init();
        // The direction bit of a read is set, and a short response is padded.
        unit->clearTrace();
        unit->addFault(
            VirtualUnit::Fault::on("version", VirtualUnit::Fault::Action::ShortAnswer, 4));
        QCOMPARE(device.controlRead(0x41, 0x24, 0, 0, 8, 1000), QByteArray("1.2.\0\0\0\0", 8));
        QCOMPARE(unit->trace().at(0).setup.bmRequestType, std::uint8_t(0xC1));
        QCOMPARE(device.getDescriptor(2, 0, 9).left(2).toHex(), QByteArray("0902"));
        // Aborted from another thread while it waits, and refused from then on.
        unit->addFault(VirtualUnit::Fault::on("version", VirtualUnit::Fault::Action::Silence));
        unit->clearTrace();
        std::thread other([&] {
            while (unit->trace().empty())
                QThread::msleep(1);
            device.abortTransfers();
        });
        for (int twice = 0; twice < 2; ++twice)
            QCOMPARE(messageOf([&] { device.controlRead(0xC1, 0x24, 0, 0, 8, 60000); }),
                     QStringLiteral("Control transfer error: LIBUSB_ERROR_INTERRUPTED"));
        other.join();
    }

    void endings()
    {
        const auto unit = m_bus->plugApplication("Wash 7", "1.2.0");
        const P_LibUsbDevice record = m_bus->awaitRecord(0x0C07);
        USBDevice first(record, 1, 0);
        USBDevice second(record, 1, 0);
        first.init();
        QCOMPARE(messageOf([&] { second.init(); }),
                 QStringLiteral("Could not claim USB device interface: LIBUSB_ERROR_BUSY"));
        QVERIFY(!second.isOpened());
        first.stop(); // releases the interface
        second.init();
        first.close();
        QCOMPARE(messageOf([&] { first.controlRead(0xC1, 0x24, 0, 0, 8, 50); }),
                 QStringLiteral("USB device not opened"));

        QSignalSpy disconnected(&second, &USBDevice::disconnected);
        m_bus->unplug(unit);
        QVERIFY(m_bus->awaitGone(0x0C07));
        QCOMPARE(messageOf([&] { second.controlRead(0xC1, 0x24, 0, 0, 8, 1000); }),
                 QStringLiteral("Control transfer error: LIBUSB_ERROR_NO_DEVICE"));
        QCOMPARE(disconnected.count(), 1);
    }

    void failedRegistration()
    {
        delete I_USBNotifier::create(nullptr, nullptr); // nothing is delivered to it later
        LogCapture log({"LibusbUSBNotifier"});
        registrationFails = true;
        delete I_USBNotifier::create(nullptr, nullptr);
        registrationFails = false;
        QCOMPARE(log.messages().first(),
                 QStringLiteral("ERROR Error registering the libusb hotplug callback: -11"));
        QVERIFY(log.messages().last().startsWith("INFO Not deregistering the libusb hotplug"));
    }

    // Each of a unit's requests a listing, which is refused before init().
    void notifications()
    {
        LogCapture log({"LibusbDeviceEnumerator"});
        LibusbDeviceEnumerator enumerator;
        for (const int id : {0x07EB, 0x07FB, 0x0A14, 0x0A15, 0x0C05, 0x0C06, 0x0C07, 0x0C08}) {
            enumerator.on_USBNotifier_Attachment(0x16D0, quint16(id));
            enumerator.on_USBNotifier_Removal(0x16D0, quint16(id));
        }
        QCOMPARE(log.messages().filter("WARN already enumerating, ignoring").size(), 16);
        enumerator.on_USBNotifier_Attachment(0x16D0, 0x0C04);
        enumerator.on_USBNotifier_Removal(0x1234, 0x0C05);
        QVERIFY(!enumerator.init(nullptr));
        QCOMPARE(log.messages().size(), 17);
    }

    void enumeratorReportsDifferences()
    {
        LogCapture log({"LibusbDeviceEnumerator", "LibusbUSBNotifier"});
        Listener first, second, third;
        second.takes = true;
        LibusbDeviceEnumerator enumerator;
        enumerator.setListingDelay(1);
        for (Listener* listener : {&first, &second, &third})
            enumerator.addListener(listener);
        const auto aquen = m_bus->plugApplication("A", "1.3.1");
        QVERIFY(m_bus->awaitRecord(0x0C07));
        QVERIFY(enumerator.init(this));
        QVERIFY(!enumerator.init(this));
        QStringList expected("+c07");
        QTRY_COMPARE(second.calls, expected);
        // From here on, the bus notifies. A unit that stays is not reported again.
        m_bus->plugApplication("S", "1.3.1", VirtualUnit::Kind::Solvar);
        expected << "+c08";
        QTRY_COMPARE(second.calls, expected);
        m_bus->unplug(aquen);
        expected << "-c07";
        QTRY_COMPARE(second.calls, expected);
        QCOMPARE(log.messages().filter("Hotplug event: device arrived 5840 3080").size(), 1);
        QVERIFY(log.contains("INFO", "Hotplug event: device left 5840 3079"));
        // Both in one listing: the removal comes first.
        m_bus->unplugAll();
        m_bus->plugBootloader();
        QVERIFY(m_bus->awaitRecord(0x0C05) && m_bus->awaitGone(0x0C08));
        enumerator.requestEnumerateUSBDevices(0, 0);
        expected += {"-c08", "+c05"};
        QTRY_COMPARE(second.calls, expected);
        QVERIFY(first.calls == expected && third.calls.isEmpty());
    }

    // It waits for the listing, which first waits for the unit to settle.
    void enumeratorEndsWhileListing()
    {
        QElapsedTimer time;
        time.start();
        QVERIFY(LibusbDeviceEnumerator().init(this));
        QVERIFY(time.elapsed() >= 2000);
    }

    void listingThatFails()
    {
        LibusbDeviceEnumerator enumerator;
        enumerator.setListingDelay(100);
        QVERIFY(enumerator.init(this));
        LogCapture log({"LibusbDeviceEnumerator", "LibusbUSBNotifier"});
        delete enumerator.findChild<I_USBNotifier*>(); // it needs the session
        LibUSB::instance().exit();
        QTRY_COMPARE(log.messages().size(), 2);
        enumerator.requestEnumerateUSBDevices(0, 0); // it is idle again
        QTRY_COMPARE(log.messages().size(), 3);
        const QString line =
            "WARN Listing of the USB bus failed: Can't list devices without libusb "
            "initialized";
        QCOMPARE(log.messages().mid(1), QStringList({line, line}));
        QVERIFY(log.contains("INFO", "Deregistering the libusb hotplug callback"));
        LibUSB::instance().init();
    }

private:
    std::unique_ptr<BusFixture> m_bus;
};

QTEST_GUILESS_MAIN(tst_usbbus)
#include "tst_usbbus.moc"
