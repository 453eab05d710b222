// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tracking/AquenSolvarWatcher.h"

#include "USB/USBException.h"
#include "devices/AquenSolvarDevice.h"
#include "devices/AquenSolvarDfuDevice.h"
#include "devices/UnitKind.h"
#include "qslog/Log.h"

namespace AquenSolvar {

namespace {

Device::P_I_Device makeDevice(const Device::UnitKind& kind, const USB::P_LibUsbDevice& record)
{
    if (kind.dfu)
        return QSharedPointer<Device::AquenSolvarDfuDevice>::create(record);
    return QSharedPointer<Device::AquenSolvarDevice>::create(record);
}

} // namespace

AquenSolvarWatcher::AquenSolvarWatcher(QObject* parent)
    : QObject(parent)
{
}

AquenSolvarWatcher::~AquenSolvarWatcher() = default;

bool AquenSolvarWatcher::init(USB::LibusbDeviceEnumerator* usbEnumerator)
{
    if (usbEnumerator == nullptr) {
        QLOG_ERROR() << "Was not passed an enumerator";
        return false;
    }
    m_usbEnumerator = usbEnumerator;
    m_usbEnumerator->addListener(this);
    QLOG_INFO() << "Initialization complete!";
    return true;
}

bool AquenSolvarWatcher::cb_libusbDeviceAdded(USB::P_LibUsbDevice device)
{
    const libusb_device_descriptor& descriptor = device->descriptor;
    QLOG_INFO() << "Found:" << descriptor.idVendor << descriptor.idProduct;
    const Device::UnitKind* kind = Device::unitKindOf(descriptor.idProduct);
    if (kind == nullptr)
        return false;
    QLOG_INFO() << kind->arrivalText;
    Device::P_I_Device unit;
    try {
        unit = makeDevice(*kind, device);
    } catch (const USB::USBException& exception) {
        QLOG_ERROR()
            << "Could not open the" << kind->name << "on port" << USB::portPath(*device) << ":"
            << exception.what()
            << "- Check that you may access USB devices (Linux: udev rule; Windows: WinUSB "
               "driver) and that no other copy of this program is running.";
        m_unopenedDevices.insert(device);
        emit deviceNotOpened(device, openFailureOf(exception.errorCode()));
        return false;
    }
    m_knownDevices[device] = unit;
    emit addedDevice(unit);
    if (kind->dfu)
        emit addedDFUDevice(unit.data());
    return false;
}

bool AquenSolvarWatcher::cb_libusbDeviceRemoved(USB::P_LibUsbDevice device)
{
    const libusb_device_descriptor& descriptor = device->descriptor;
    QLOG_INFO() << "USB device removed..." << descriptor.idVendor << descriptor.idProduct;
    const Device::UnitKind* kind = Device::unitKindOf(descriptor.idProduct);
    if (m_unopenedDevices.erase(device) > 0)
        emit unopenedDeviceLeft(device);
    const auto known = m_knownDevices.find(device);
    if (kind == nullptr || known == m_knownDevices.end())
        return false;
    const Device::P_I_Device unit = known->second;
    m_knownDevices.erase(known);
    QLOG_INFO() << kind->removalText;
    emit removedDevice(unit);
    return true;
}

} // namespace AquenSolvar
