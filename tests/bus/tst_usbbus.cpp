// The USB layer on a bus of virtual units: listings, opened devices, the enumerator.
#include "USB/LibusbDeviceEnumerator.h"
#include "USB/LibusbUSBNotifier.h"
#include "USB/PFlibusb.h"
#include "USB/USBDevice.h"
#include "USB/USBException.h"
#include "support/BusFixture.h"
#include "support/LogCapture.h"

#include <QSignalSpy>
#include <QTest>

using namespace USB;
using VirtualUnit::Fault;
using VirtualUnit::Kind;
using VirtualUnit::P_Unit;

namespace {

struct Listener : LibusbDeviceEnumeratorListener
{
    Listener(QString listenerName, QStringList& callLog, bool takesDevices)
        : name(std::move(listenerName))
        , calls(callLog)
        , takes(takesDevices)
    {
    }
    bool cb_libusbDeviceAdded(P_LibUsbDevice device) override
    {
        calls << QStringLiteral("%1 +%2").arg(name).arg(device->descriptor.idProduct, 4, 16);
        return takes;
    }
    bool cb_libusbDeviceRemoved(P_LibUsbDevice device) override
    {
        calls << QStringLiteral("%1 -%2").arg(name).arg(device->descriptor.idProduct, 4, 16);
        return takes;
    }
    QString name;
    QStringList& calls;
    bool takes;
};

// Comes back some passes of the event loop after it was asked to.
struct SlowTransfer : I_USBTransfer
{
    void cancel() override { passesLeft = 2; }
    bool isDone() const override { return passesLeft >= 0 && passesLeft-- == 0; }
    mutable int passesLeft = -1;
};

} // namespace

class tst_usbbus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void sessionOpensOnce();
    void wildcards();
    void transfers();
    void unknownConfiguration();
    void unplugged();
    void aborted();
    void eventThread();
    void noticesOfTheBus();
    void enumeratorOffersDifferences();
    void enumeratorGoesAwayWhileListing();
    void defaultListingDelay();

private:
    std::unique_ptr<BusFixture> m_bus;
};

void tst_usbbus::initTestCase()
{
    m_bus = std::make_unique<BusFixture>();
}

void tst_usbbus::cleanup()
{
    m_bus->unplugAll();
    QVERIFY(m_bus->awaitGone(0));
}

void tst_usbbus::sessionOpensOnce()
{
    LogCapture log({"PFlibusb"});
    LibUSB::instance().init();
    QCOMPARE(log.messages(), QStringList("INFO libusb already initialized"));
}

void tst_usbbus::wildcards()
{
    m_bus->plugApplication("A", "1.3.1");
    m_bus->plugApplication("S", "1.3.1", Kind::Solvar);
    QVERIFY(m_bus->awaitRecord(0x0C07) && m_bus->awaitRecord(0x0C08));
    LibUSB& session = LibUSB::instance();
    QCOMPARE(session.find(0x16D0, 0).size(), 2);
    QCOMPARE(session.find(0, 0x0C08).size(), 1);
    QCOMPARE(session.find(0x1234, 0).size(), 0);
    QVERIFY(session.find(0, 0).size() > 2); // the root hub as well
    const P_LibUsbDevice record = session.find(0, 0x0C08).first();
    QVERIFY(record->text.isEmpty());
    QVERIFY(!portPath(*record).isEmpty());
}

void tst_usbbus::transfers()
{
    const P_Unit unit = m_bus->plugApplication("Wash 7", "1.2.0");
    LogCapture log({"USBDevice"});
    USBDevice device(m_bus->awaitRecord(0x0C07), 1, 0);
    QCOMPARE(device.toString(), QStringLiteral("16d0:0c07"));
    device.init();
    QVERIFY(!log.contains("INFO", "Switching USB device configuration"));
    QVERIFY(log.contains("INFO", "Current USB configuration: 1, new: 1"));
    QVERIFY_EXCEPTION_THROWN(device.create(), USBException);
    QCOMPARE(device.configDescriptor().interfaces().size(), 1);

    // A write's request type becomes a read's, and a short answer is filled up with zeros.
    unit->clearTrace();
    unit->addFault(Fault::on("version", Fault::Action::ShortAnswer, 4));
    const QByteArray answer = device.controlRead(0x41, 0x24, 0, 0, 8, 1000);
    QCOMPARE(answer, QByteArray("1.2.\0\0\0\0", 8));
    QCOMPARE(unit->trace().at(0).setup.bmRequestType, std::uint8_t(0xC1));
    QCOMPARE(device.getDescriptor(2, 0, 9).at(0), char(9));

    try {
        device.controlWrite(0x41, 0x77, 0, 0, "nonsense", 1000);
        QFAIL("an unknown request was taken");
    } catch (const USBException& exception) {
        QCOMPARE(exception.message(), QStringLiteral("control write error: LIBUSB_ERROR_PIPE"));
    }
    QVERIFY(device.isOpened());
    unit->addFault(Fault::on("version", Fault::Action::Silence));
    try {
        device.controlRead(0xC1, 0x24, 0, 0, 8, 50);
        QFAIL("silence was an answer");
    } catch (const USBException& exception) {
        QCOMPARE(exception.message(),
                 QStringLiteral("Control transfer error: LIBUSB_ERROR_TIMEOUT"));
    }
    QVERIFY_EXCEPTION_THROWN(device.getStringDescriptor(0), USBException);
    QVERIFY_EXCEPTION_THROWN(device.controlWrite(0x21, 1, 0, 0, QByteArray(70000, 'x'), 50),
                             USBException);
    device.stop();
    device.stop();
    device.close();
    QVERIFY_EXCEPTION_THROWN(device.controlRead(0xC1, 0x24, 0, 0, 8, 50), USBException);
}

void tst_usbbus::unknownConfiguration()
{
    m_bus->plugApplication("Wash 7", "1.2.0");
    const P_LibUsbDevice record = m_bus->awaitRecord(0x0C07);
    USBDevice device(record, 2, 0);
    try {
        device.init();
        QFAIL("a configuration that the unit does not have was set");
    } catch (const USBException& exception) {
        QVERIFY2(exception.message().startsWith(
                     "Could not set the configuration of the usb device: LIBUSB_ERROR_"),
                 qPrintable(exception.message()));
    }
    QVERIFY(!device.isOpened());
    USBDevice(record, 1, 0).init(); // not held by the first attempt
}

void tst_usbbus::unplugged()
{
    const P_Unit unit = m_bus->plugApplication("Wash 7", "1.2.0");
    USBDevice device(m_bus->awaitRecord(0x0C07), 1, 0);
    device.init();
    QSignalSpy disconnected(&device, &USBDevice::disconnected);
    QSignalSpy closed(&device, &USBDevice::closed);
    m_bus->unplug(unit);
    QVERIFY(m_bus->awaitGone(0x0C07));
    QVERIFY_EXCEPTION_THROWN(device.controlRead(0xC1, 0x24, 0, 0, 8, 1000), USBException);
    QCOMPARE(disconnected.count(), 1);
    QCOMPARE(closed.count(), 1);
}

void tst_usbbus::aborted()
{
    const P_Unit unit = m_bus->plugApplication("Wash 7", "1.2.0");
    USBDevice device(m_bus->awaitRecord(0x0C07), 1, 0);
    device.init();
    unit->addFault(Fault::on("version", Fault::Action::Silence));
    const std::unique_ptr<QThread> other(QThread::create([&] {
        QThread::msleep(100);
        device.abortTransfers();
    }));
    other->start();
    QElapsedTimer time;
    time.start();
    QVERIFY_EXCEPTION_THROWN(device.controlRead(0xC1, 0x24, 0, 0, 8, 100000), USBException);
    QVERIFY(time.elapsed() < 2000);
    other->wait();
    QVERIFY_EXCEPTION_THROWN(device.controlRead(0xC1, 0x24, 0, 0, 8, 1000), USBException);
}

void tst_usbbus::eventThread()
{
    m_bus->plugApplication("Wash 7", "1.2.0");
    SlowTransfer transfer;
    USBDevice device(m_bus->awaitRecord(0x0C07), 1, 0);
    device.init();
    device.addTransfer(&transfer);
    LogCapture log({"USBDevice"});
    // A stop right after the start, before the new thread has come to its loop, counts as well.
    for (const unsigned long pause : {0ul, 50ul, 0ul, 0ul}) {
        transfer.passesLeft = -1;
        device.start();
        QThread::msleep(pause);
        device.stop();
        QVERIFY(device.isFinished());
        QCOMPARE(transfer.passesLeft, -1); // seen as done by the loop
    }
    {
        USBDevice dropped(m_bus->awaitRecord(0x0C07), 1, 0);
        dropped.start();
    }
    QVERIFY(!log.contains("WARN", "timed out while closing"));
}

void tst_usbbus::noticesOfTheBus()
{
    m_bus->plugApplication("Wash 7", "1.2.0");
    const P_LibUsbDevice record = m_bus->awaitRecord(0x0C07);
    LogCapture log({"LibusbUSBNotifier"});
    LibusbUSBNotifier notifier;
    QSignalSpy arrived(&notifier, &I_USBNotifier::USBAttachmentNotification);
    QSignalSpy left(&notifier, &I_USBNotifier::USBRemovalNotification);
    // The answer 0 keeps the callback registered.
    for (const int event :
         {int(LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED), int(LIBUSB_HOTPLUG_EVENT_DEVICE_LEFT), 4})
        QCOMPARE(notifier.hotplug_callback(record->device, event), 0);
    const QList<QVariant> unit = {quint16(0x16D0), quint16(0x0C07)};
    QCOMPARE(QList<QList<QVariant>>(arrived), {unit});
    QCOMPARE(QList<QList<QVariant>>(left), {unit});
    QVERIFY(log.contains("ERROR", "Invalid libusb hotplug event: 4"));
}

void tst_usbbus::enumeratorOffersDifferences()
{
    LogCapture log({"LibusbDeviceEnumerator"});
    QStringList calls;
    Listener first("first", calls, false);
    Listener second("second", calls, true);
    Listener third("third", calls, true);
    LibusbDeviceEnumerator enumerator;
    enumerator.setListingDelay(1);
    for (Listener* listener : {&first, &second, &third})
        enumerator.addListener(listener);
    const P_Unit aquen = m_bus->plugApplication("A", "1.3.1");
    QVERIFY(m_bus->awaitRecord(0x0C07));
    QObject window;
    QVERIFY(enumerator.init(&window));
    QVERIFY(!enumerator.init(&window));
    QVERIFY(waitFor([&] { return calls.size() == 2; }));
    QCOMPARE(calls, QStringList({"first + c07", "second + c07"}));

    // A swap within one listing: the removal comes first.
    calls.clear();
    m_bus->unplug(aquen);
    m_bus->plugApplication("S", "1.3.1", Kind::Solvar);
    QVERIFY(m_bus->awaitRecord(0x0C08) && m_bus->awaitGone(0x0C07));
    enumerator.on_USBNotifier_Removal(0x16D0, 0x0C01); // not a unit: no listing
    enumerator.on_USBNotifier_Attachment(0x1234, 0x0C08);
    enumerator.on_USBNotifier_Attachment(0x16D0, 0x07EB);
    enumerator.on_USBNotifier_Removal(0x16D0, 0x0C07);
    QVERIFY(waitFor([&] { return calls.size() == 4; }));
    QCOMPARE(calls, QStringList({"first - c07", "second - c07", "first + c08", "second + c08"}));
    QCOMPARE(log.messages().filter("already enumerating, ignoring").size(), 1);

    // Notices of the platform arrive by themselves.
    calls.clear();
    m_bus->unplugAll();
    QVERIFY(waitFor([&] { return calls.size() == 2; }));
    QCOMPARE(calls, QStringList({"first - c08", "second - c08"}));
}

void tst_usbbus::enumeratorGoesAwayWhileListing()
{
    QStringList calls;
    Listener listener("listener", calls, true);
    m_bus->plugApplication("A", "1.3.1");
    QVERIFY(m_bus->awaitRecord(0x0C07));
    {
        LibusbDeviceEnumerator enumerator;
        enumerator.setListingDelay(100);
        enumerator.addListener(&listener);
        QObject window;
        QVERIFY(enumerator.init(&window));
    }
    QVERIFY(waitFor([] { return false; }, 50) || calls.isEmpty());
}

void tst_usbbus::defaultListingDelay()
{
    QStringList calls;
    Listener listener("listener", calls, true);
    m_bus->plugApplication("A", "1.3.1");
    QVERIFY(m_bus->awaitRecord(0x0C07));
    LibusbDeviceEnumerator enumerator;
    enumerator.addListener(&listener);
    QObject window;
    QElapsedTimer time;
    time.start();
    QVERIFY(enumerator.init(&window));
    QVERIFY(waitFor([&] { return !calls.isEmpty(); }));
    QVERIFY2(time.elapsed() >= 1990 && time.elapsed() < 3000,
             qPrintable(QString::number(time.elapsed())));
}

QTEST_GUILESS_MAIN(tst_usbbus)
#include "tst_usbbus.moc"
