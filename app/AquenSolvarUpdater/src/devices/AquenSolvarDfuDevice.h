#pragma once

#include "USB/LibUsbDevice.h"
#include "devices/I_Device.h"

#include <QEnableSharedFromThis>

namespace AquenSolvar::Device {

/// A unit whose DFU bootloader is on the bus. Opens nothing and talks to nothing: it keeps the
/// record with which an update can open the unit. A bootloader does not report the unit's own name,
/// so two of one kind carry the same label. Immutable. GUI thread.
class AquenSolvarDfuDevice : public I_Device, public QEnableSharedFromThis<AquenSolvarDfuDevice>
{
    Q_OBJECT

public:
    /// Type and label follow from the record's product id; another id than a bootloader's gives
    /// UNKNOWN and an empty label.
    explicit AquenSolvarDfuDevice(USB::P_LibUsbDevice record);

    DeviceType deviceType() const override { return m_deviceType; }
    QString serialName() const override { return m_serialName; }
    QString sectionName() const override;
    int sortOrder() const override { return 0; }
    bool needsUpdate() const override { return true; }
    bool isDfu() const override { return true; }

    USB::P_LibUsbDevice record() const { return m_record; }

private:
    DeviceType m_deviceType = UNKNOWN;
    QString m_serialName;
    USB::P_LibUsbDevice m_record;
};

} // namespace AquenSolvar::Device
