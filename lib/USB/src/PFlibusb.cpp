// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/PFlibusb.h"

#include "USB/USBException.h"
#include "qslog/Log.h"

#include <QObject>
#include <QThread>

#include <memory>

namespace USB {

namespace {

const char* const notInitialized = "Can't list devices without libusb initialized";

using OwnedRecord = std::unique_ptr<LibUsbDevice, decltype(&releaseLibUsbDevice)>;

// Takes ownership of the list's reference to the device.
OwnedRecord makeRecord(libusb_device* device)
{
    OwnedRecord record(new LibUsbDevice, &releaseLibUsbDevice);
    record->device = device;
    return record;
}

bool matches(const libusb_device_descriptor& descriptor, quint16 vid, quint16 pid)
{
    return (vid == 0 || descriptor.idVendor == vid) && (pid == 0 || descriptor.idProduct == pid);
}

} // namespace

LibUSB& LibUSB::instance()
{
    static LibUSB session;
    return session;
}

LibUSB::~LibUSB()
{
    exit();
}

void LibUSB::init()
{
    if (m_initialized) {
        QLOG_INFO() << "libusb already initialized";
        return;
    }
    QLOG_INFO() << "Initializing libusb...";
    const int result = libusb_init(nullptr);
    if (result < 0) {
        const QString message = QObject::tr("Error initializing libusb: %1")
                                    .arg(QString::fromLatin1(libusb_error_name(result)));
        QLOG_INFO() << "check libusb retvalue " << message;
        throw USBException(message, result);
    }
    QLOG_INFO() << "libusb initialized";
    m_initialized = true;
}

void LibUSB::exit()
{
    if (!m_initialized)
        return;
    libusb_exit(nullptr);
    m_initialized = false;
}

QList<LibUsbDevice*> LibUSB::findRaw(quint16 vid, quint16 pid)
{
    if (!m_initialized) {
        QLOG_WARN() << notInitialized;
        throw USBException(QObject::tr(notInitialized));
    }
    QList<LibUsbDevice*> records;
    libusb_device** list = nullptr;
    const ssize_t count = libusb_get_device_list(nullptr, &list);
    for (ssize_t i = 0; i < count; ++i) {
        libusb_device_descriptor descriptor = {};
        const int result = libusb_get_device_descriptor(list[i], &descriptor);
        if (vid != 0 || pid != 0) {
            if (result < 0) {
                QLOG_WARN() << "Failed to get device descriptor for USB device" << i;
                continue;
            }
            if (!matches(descriptor, vid, pid)) {
                libusb_unref_device(list[i]);
                continue;
            }
        }
        OwnedRecord record = makeRecord(list[i]);
        record->descriptor = descriptor;
        records.append(record.release());
    }
    // The references of the kept devices now belong to their records.
    libusb_free_device_list(list, 0);
    return records;
}

QList<P_LibUsbDevice> LibUSB::find(quint16 vid, quint16 pid)
{
    QList<P_LibUsbDevice> records;
    const QList<LibUsbDevice*> raw = findRaw(vid, pid);
    for (LibUsbDevice* record : raw)
        records.append(P_LibUsbDevice(record, &releaseLibUsbDevice));
    return records;
}

QList<P_LibUsbDevice> LibUSB::find_delayed(int delayMs, quint16 vid, quint16 pid)
{
    if (!m_initialized) {
        QLOG_WARN() << notInitialized;
        throw USBException(QObject::tr(notInitialized));
    }
    QThread::msleep(static_cast<unsigned long>(qMax(0, delayMs)));
    return find(vid, pid);
}

} // namespace USB
