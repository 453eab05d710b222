// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/AttachedUnit.h"

#include "USB/PFlibusb.h"
#include "USB/USBDevice.h"
#include "devices/AquenSolvarDevice.h"
#include "devices/OpenFailure.h"

#include <QThread>

#include <algorithm>

namespace AquenSolvar::Device {

namespace {

constexpr quint16 unitVendor = 0x16D0;
constexpr int tries = 6;
constexpr unsigned long retryMs = 100;

} // namespace

QString AttachedUnit::kindWord() const
{
    return QString::fromLatin1(bootloaderOf(*kind).firmwarePattern).section(QLatin1Char('-'), 0, 0);
}

bool AttachedUnit::isSameAs(const AttachedUnit& other) const
{
    // The system gives a new address to each device that arrives.
    return port == other.port && kind == other.kind &&
           libusb_get_device_address(record->device) ==
               libusb_get_device_address(other.record->device);
}

bool AttachedUnit::isAmong(const QList<AttachedUnit>& units) const
{
    return std::any_of(units.begin(), units.end(),
                       [this](const AttachedUnit& other) { return other.isSameAs(*this); });
}

void AttachedUnit::read()
{
    needsUpdate = kind->dfu;
    for (int attempt = 1; !kind->dfu; ++attempt) {
        try {
            const AquenSolvarDevice device(record);
            name = device.serialName();
            firmware = device.firmwareVersion();
            needsUpdate = device.needsUpdate();
            error.reset();
            if (firmware.isEmpty())
                error = USB::USBException(QStringLiteral("The unit did not report its version"));
            return;
        } catch (const USB::USBException& exception) {
            error = exception;
            if (openFailureOf(exception.errorCode()) != OpenFailure::InUse || attempt == tries)
                return;
        }
        QThread::msleep(retryMs);
    }
}

void AttachedUnit::tryOpen()
{
    read();
    if (!kind->dfu)
        return;
    try {
        USB::USBDevice(record, 1, 0).init();
    } catch (const USB::USBException& exception) {
        error = exception;
    }
}

QList<AttachedUnit> attachedUnits()
{
    QList<AttachedUnit> units;
    USB::LibUSB& session = USB::LibUSB::instance();
    if (!session.initialized())
        return units;
    const QList<USB::P_LibUsbDevice> records = session.find(unitVendor, 0);
    for (const USB::P_LibUsbDevice& record : records) {
        AttachedUnit unit;
        unit.record = record;
        unit.kind = unitKindOf(record->descriptor.idProduct);
        unit.port = USB::portPath(*record);
        if (unit.kind != nullptr)
            units.append(unit);
    }
    std::sort(units.begin(), units.end(),
              [](const AttachedUnit& a, const AttachedUnit& b) { return a.port < b.port; });
    return units;
}

QString remedyFor(const USB::USBException& error)
{
    switch (openFailureOf(error.errorCode())) {
    case OpenFailure::NoPermission:
        return QStringLiteral("No permission: install the udev rule of the package and plug the "
                              "unit in again; in a remote session join the group plugdev.");
    case OpenFailure::InUse:
        return QStringLiteral("In use: close the other program or copy that uses the unit.");
    case OpenFailure::NoDriver:
        return QStringLiteral("No driver: assign the WinUSB driver to the unit, once in normal "
                              "operation and once in its bootloader.");
    default:
        return error.message() +
               QStringLiteral(": switch the unit off and on, and try another cable or port.");
    }
}

} // namespace AquenSolvar::Device
