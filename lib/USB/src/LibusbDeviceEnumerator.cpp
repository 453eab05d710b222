// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/LibusbDeviceEnumerator.h"

#include "USB/I_USBNotifier.h"
#include "USB/PFlibusb.h"
#include "USB/USBException.h"
#include "qslog/Log.h"

#include <QCoreApplication>
#include <QException>
#include <QThread>
#include <QtConcurrent>

#include <algorithm>
#include <iterator>

namespace USB {

namespace {

constexpr quint16 unitVendor = 0x16D0;
constexpr quint16 unitProducts[] = {0x07EB, 0x07FB, 0x0A14, 0x0A15, 0x0C07, 0x0C05, 0x0C08, 0x0C06};
constexpr unsigned long windDownPollMs = 100;

// Carries the message of a failed listing from the pool thread to the main thread. A future reports
// any other exception without its message.
class ListingFailed : public QException
{
public:
    explicit ListingFailed(std::string message)
        : m_message(std::move(message))
    {
    }
    void raise() const override { throw *this; }
    ListingFailed* clone() const override { return new ListingFailed(*this); }
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    std::string m_message;
};

QList<P_LibUsbDevice> listBus(LibUSB* session, int delayMs, quint16 vid, quint16 pid)
{
    try {
        return session->find_delayed(delayMs, vid, pid);
    } catch (const std::exception& exception) {
        throw ListingFailed(exception.what());
    }
}

QString describe(const LibUsbDevice& record)
{
    return QString::asprintf("%.4x:%.4x, address %d, port ", record.descriptor.idVendor,
                             record.descriptor.idProduct,
                             libusb_get_device_address(record.device)) +
           portPath(record);
}

// Hook for printing a table while debugging the comparison. Prints nothing as shipped.
template <typename Table>
void snapshot(const char*, const Table&)
{
}

} // namespace

LibusbDeviceEnumerator::LibusbDeviceEnumerator(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<P_LibUsbDevice>("USB::P_LibUsbDevice");
}

LibusbDeviceEnumerator::~LibusbDeviceEnumerator()
{
    m_state = WindingDown;
    if (m_watcher != nullptr) {
        do {
            try {
                m_watcher->waitForFinished();
            } catch (const QException& exception) {
                QLOG_WARN() << "Listing of the USB bus failed:" << exception.what();
            }
            if (!m_watcher->isFinished() && m_watcher->isRunning()) {
                QCoreApplication::processEvents();
                QThread::msleep(windDownPollMs);
            }
        } while (!m_watcher->isFinished() && m_watcher->isRunning());
    }
    m_listeners.clear();
    m_devices.clear();
    if (m_watcher != nullptr)
        m_watcher->deleteLater();
}

bool LibusbDeviceEnumerator::init(QObject* window)
{
    if (m_state != NotInitialized) {
        QLOG_WARN() << "Was called twice";
        return false;
    }
    if (window == nullptr) {
        QLOG_WARN() << "Was not passed a handle to the application window";
        return false;
    }
    try {
        LibUSB::instance().init();
    } catch (const USBException& exception) {
        // The caller is QML: an exception must not propagate into it.
        QLOG_WARN() << "USB session could not be opened:" << exception.message();
        return false;
    }
    I_USBNotifier* notifier = I_USBNotifier::create(this, window);
    if (notifier == nullptr) {
        QLOG_WARN() << "USB notifier registration failed";
    } else {
        connect(notifier, &I_USBNotifier::USBAttachmentNotification, this,
                &LibusbDeviceEnumerator::on_USBNotifier_Attachment, Qt::QueuedConnection);
        connect(notifier, &I_USBNotifier::USBRemovalNotification, this,
                &LibusbDeviceEnumerator::on_USBNotifier_Removal, Qt::QueuedConnection);
    }
    m_state = Idle;
    requestEnumerateUSBDevices(0, 0);
    return true;
}

void LibusbDeviceEnumerator::addListener(LibusbDeviceEnumeratorListener* listener)
{
    m_listeners.append(listener);
}

void LibusbDeviceEnumerator::on_USBNotifier_Attachment(quint16 vid, quint16 pid)
{
    enumerateForNotice(vid, pid);
}

void LibusbDeviceEnumerator::on_USBNotifier_Removal(quint16 vid, quint16 pid)
{
    enumerateForNotice(vid, pid);
}

void LibusbDeviceEnumerator::enumerateForNotice(quint16 vid, quint16 pid)
{
    if (vid != unitVendor)
        return;
    if (std::find(std::begin(unitProducts), std::end(unitProducts), pid) != std::end(unitProducts))
        requestEnumerateUSBDevices(0, 0);
}

void LibusbDeviceEnumerator::requestEnumerateUSBDevices(quint16 vid, quint16 pid)
{
    switch (m_state) {
    case NotInitialized:
    case Enumerating:
        QLOG_WARN() << "already enumerating, ignoring";
        return;
    case WindingDown:
        QLOG_WARN() << "won't enumerate when winding down";
        return;
    default:
        break;
    }
    m_state = Enumerating;
    m_watcher = new Listing(this);
    connect(m_watcher, &Listing::finished, this,
            &LibusbDeviceEnumerator::on_QFutureWatcher_finished, Qt::QueuedConnection);
    m_watcher->setFuture(
        QtConcurrent::run(&listBus, &LibUSB::instance(), m_listingDelayMs, vid, pid));
}

void LibusbDeviceEnumerator::on_QFutureWatcher_finished()
{
    switch (m_state) {
    case NotInitialized:
    case Idle:
        QLOG_WARN() << "enumeration finished but idle, ignoring";
        return;
    case WindingDown:
        return;
    default:
        break;
    }
    // The future refers to every device of the bus.
    Listing* const listing = std::exchange(m_watcher, nullptr);
    listing->deleteLater();
    QList<P_LibUsbDevice> records;
    try {
        records = listing->result();
    } catch (const QException& exception) {
        QLOG_WARN() << "Listing of the USB bus failed:" << exception.what();
        m_state = Idle;
        return;
    }
    snapshot("Initial libusb devices", m_devices);
    DeviceTable fresh;
    for (const P_LibUsbDevice& record : qAsConst(records)) {
        if (record->descriptor.idVendor != unitVendor)
            continue;
        fresh[Key(libusb_get_bus_number(record->device),
                  libusb_get_device_address(record->device))] = record;
    }
    replaceTable(fresh);
    snapshot("Final libusb devices", m_devices);
    m_state = Idle;
}

void LibusbDeviceEnumerator::replaceTable(const DeviceTable& fresh)
{
    const auto byKey = [](const auto& left, const auto& right) {
        return left.first < right.first;
    };
    std::vector<DeviceTable::value_type> added;
    std::vector<DeviceTable::value_type> rotten;
    std::set_difference(fresh.begin(), fresh.end(), m_devices.begin(), m_devices.end(),
                        std::back_inserter(added), byKey);
    std::set_difference(m_devices.begin(), m_devices.end(), fresh.begin(), fresh.end(),
                        std::back_inserter(rotten), byKey);
    snapshot("New libusb devices", added);
    snapshot("Rotten libusb devices", rotten);
    QLOG_DEBUG() << "Listed" << fresh.size() << "units:" << added.size() << "new," << rotten.size()
                 << "gone";
    for (const auto& [key, device] : rotten) {
        QLOG_DEBUG() << "Gone:" << qUtf8Printable(describe(*device));
        m_devices.erase(key);
        offerRemoved(device);
    }
    for (const auto& [key, device] : added) {
        QLOG_DEBUG() << "New:" << qUtf8Printable(describe(*device));
        m_devices[key] = device;
        offerAdded(device);
    }
}

void LibusbDeviceEnumerator::offerRemoved(const P_LibUsbDevice& device)
{
    for (LibusbDeviceEnumeratorListener* listener : qAsConst(m_listeners)) {
        if (listener->cb_libusbDeviceRemoved(device))
            return;
    }
}

void LibusbDeviceEnumerator::offerAdded(const P_LibUsbDevice& device)
{
    for (LibusbDeviceEnumeratorListener* listener : qAsConst(m_listeners)) {
        if (listener->cb_libusbDeviceAdded(device))
            return;
    }
}

} // namespace USB
