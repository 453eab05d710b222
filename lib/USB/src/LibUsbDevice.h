// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QList>
#include <QMetaType>
#include <QSharedPointer>
#include <QString>

#include <libusb.h>

namespace USB {

/// One attached device, as found by a listing of the bus. Holds one reference to libusb's device,
/// which releaseLibUsbDevice() drops. Two records describe the same attached device when libusb
/// reports the same bus number and device address for both.
struct LibUsbDevice
{
    libusb_device* device = nullptr;
    libusb_device_descriptor descriptor = {}; ///< zeros when it could not be read
    QString text;                             ///< empty; this layer never sets it
};

/// The shared record that travels through signals, futures and listener calls. Its deleter is
/// releaseLibUsbDevice().
using P_LibUsbDevice = QSharedPointer<LibUsbDevice>;

/// Drops libusb's device reference and frees the record; null does nothing. Any thread.
void releaseLibUsbDevice(LibUsbDevice* record);

/// The port that the device is plugged into, as in sysfs: bus number, "-", then the port numbers
/// from the root hub joined by "." ("3-1.4"). Empty without a device. For log lines. Any thread.
QString portPath(const LibUsbDevice& record);

} // namespace USB

Q_DECLARE_METATYPE(USB::P_LibUsbDevice)
