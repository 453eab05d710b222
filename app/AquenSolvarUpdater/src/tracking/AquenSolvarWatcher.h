#pragma once

#include "USB/LibusbDeviceEnumerator.h"
#include "USB/LibusbDeviceEnumeratorListener.h"
#include "devices/I_Device.h"

#include <QObject>

#include <map>

namespace AquenSolvar {

/// Turns the enumerator's reports into device objects: recognises the four kinds of unit by product
/// id, keeps an object while its unit is attached, and announces arrivals and removals. A unit is
/// identified by its device record alone; one that restarts is a removal and a new arrival. GUI
/// thread; the signals are emitted from inside the enumerator's calls.
class AquenSolvarWatcher : public QObject, public USB::LibusbDeviceEnumeratorListener
{
    Q_OBJECT
    Q_PROPERTY(USB::LibusbDeviceEnumerator* usbEnumerator READ usbEnumerator CONSTANT)

public:
    explicit AquenSolvarWatcher(QObject* parent = nullptr);
    ~AquenSolvarWatcher() override;

    /// Registers with the enumerator, which is not owned and must outlive the notices. Once.
    /// @return true; false, with a log line, without an enumerator.
    Q_INVOKABLE bool init(USB::LibusbDeviceEnumerator* usbEnumerator);

    USB::LibusbDeviceEnumerator* usbEnumerator() const { return m_usbEnumerator; }

    /// Always answers false, so that later listeners are offered the unit as well. A unit that
    /// cannot be opened is logged with what to do about it, and not announced.
    bool cb_libusbDeviceAdded(USB::P_LibUsbDevice device) override;

    /// True when the record was a known unit.
    bool cb_libusbDeviceRemoved(USB::P_LibUsbDevice device) override;

signals:
    /// A unit arrived, in application or DFU mode.
    void addedDevice(AquenSolvar::Device::P_I_Device device);
    /// A unit in DFU mode arrived; right after addedDevice for the same object.
    void addedDFUDevice(AquenSolvar::Device::I_Device* device);
    /// A known unit went away.
    void removedDevice(AquenSolvar::Device::P_I_Device device);

private:
    std::map<USB::P_LibUsbDevice, Device::P_I_Device> m_knownDevices;
    USB::LibusbDeviceEnumerator* m_usbEnumerator = nullptr;
};

} // namespace AquenSolvar
