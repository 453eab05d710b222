#pragma once

#include <QList>
#include <QMetaType>
#include <QSharedPointer>
#include <QString>

#include <libusb.h>

namespace USB {

/// One attached device as a listing of the bus found it. Holds one reference to libusb's device,
/// which releaseLibUsbDevice() gives back. Two records stand for the same attached device when bus
/// number and device address are equal; both are asked of libusb when needed.
struct LibUsbDevice
{
    libusb_device* device = nullptr;
    libusb_device_descriptor descriptor = {}; ///< zeros when it could not be read
    QString text;                             ///< empty; nothing in this layer fills it
};

/// The shared record that travels through signals, futures and listener calls. Its deleter is
/// releaseLibUsbDevice().
using P_LibUsbDevice = QSharedPointer<LibUsbDevice>;

/// Gives back libusb's device reference and frees the record. Any thread.
void releaseLibUsbDevice(LibUsbDevice* record);

/// Where the device is plugged in, as people and other programs write it: bus number, "-", then the
/// port numbers from the root joined by ".". For log lines. Any thread.
QString portPath(const LibUsbDevice& record);

} // namespace USB

Q_DECLARE_METATYPE(USB::P_LibUsbDevice)
