// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibusbDeviceEnumerator.h"
#include "USB/LibusbDeviceEnumeratorListener.h"
#include "devices/I_Device.h"
#include "devices/OpenFailure.h"

#include <QObject>

#include <map>
#include <set>

namespace AquenSolvar {

/// Creates a device object for each unit that the enumerator reports, and keeps it while the unit
/// is attached. Recognises the four kinds of unit by product id. The device record identifies a
/// unit: one that restarts is a removal and a new arrival. Emits its signals during the
/// enumerator's calls. GUI thread.
class AquenSolvarWatcher : public QObject, public USB::LibusbDeviceEnumeratorListener
{
    Q_OBJECT
    Q_PROPERTY(USB::LibusbDeviceEnumerator* usbEnumerator READ usbEnumerator CONSTANT)

public:
    explicit AquenSolvarWatcher(QObject* parent = nullptr);
    ~AquenSolvarWatcher() override;

    /// Registers with the enumerator. Call once. Not owned.
    /// @return false, with an error in the log, when @p usbEnumerator is null
    Q_INVOKABLE bool init(USB::LibusbDeviceEnumerator* usbEnumerator);

    USB::LibusbDeviceEnumerator* usbEnumerator() const { return m_usbEnumerator; }

    /// A unit that cannot be opened is logged together with a remedy, and is not added.
    /// @return false: later listeners are called, too
    bool cb_libusbDeviceAdded(USB::P_LibUsbDevice device) override;

    /// @return true when the record belongs to a known unit
    bool cb_libusbDeviceRemoved(USB::P_LibUsbDevice device) override;

signals:
    /// A unit arrived, in application or DFU mode.
    void addedDevice(AquenSolvar::Device::P_I_Device device);
    /// A unit in DFU mode arrived. Emitted right after addedDevice for the same object.
    void addedDFUDevice(AquenSolvar::Device::I_Device* device);
    /// A known unit left.
    void removedDevice(AquenSolvar::Device::P_I_Device device);
    /// A unit arrived that cannot be opened. Its record identifies it.
    void deviceNotOpened(USB::P_LibUsbDevice record, AquenSolvar::OpenFailure failure);
    /// A unit left that deviceNotOpened() reported.
    void unopenedDeviceLeft(USB::P_LibUsbDevice record);

private:
    std::map<USB::P_LibUsbDevice, Device::P_I_Device> m_knownDevices;
    std::set<USB::P_LibUsbDevice> m_unopenedDevices;
    USB::LibusbDeviceEnumerator* m_usbEnumerator = nullptr;
};

} // namespace AquenSolvar
