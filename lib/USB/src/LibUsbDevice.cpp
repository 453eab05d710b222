// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/LibUsbDevice.h"

#include <QStringList>

namespace USB {

void releaseLibUsbDevice(LibUsbDevice* record)
{
    if (record != nullptr && record->device != nullptr)
        libusb_unref_device(record->device);
    delete record;
}

QString portPath(const LibUsbDevice& record)
{
    if (record.device == nullptr)
        return QString();
    // USB 2.0, 4.1.1: at most seven tiers, so at most seven ports from the root to a device.
    uint8_t ports[7] = {};
    const int depth = libusb_get_port_numbers(record.device, ports, static_cast<int>(sizeof ports));
    QStringList path;
    for (int i = 0; i < depth; ++i)
        path.append(QString::number(ports[i]));
    return QStringLiteral("%1-%2")
        .arg(libusb_get_bus_number(record.device))
        .arg(path.join(QLatin1Char('.')));
}

} // namespace USB
