// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibUsbDevice.h"
#include "devices/I_Device.h"

#include <QEnableSharedFromThis>

namespace AquenSolvar::Device {

/// A unit whose DFU bootloader is on the bus. Sends nothing: it keeps the record with which an
/// update opens the unit. A bootloader does not report the unit's serial name, so that two of one
/// kind have the same label. Immutable. GUI thread.
class AquenSolvarDfuDevice : public I_Device, public QEnableSharedFromThis<AquenSolvarDfuDevice>
{
    Q_OBJECT

public:
    /// The record's product id selects type and label; any id other than a bootloader's results in
    /// UNKNOWN and an empty label.
    explicit AquenSolvarDfuDevice(USB::P_LibUsbDevice record);

    DeviceType deviceType() const override { return m_deviceType; }
    QString serialName() const override { return m_serialName; }
    QString sectionName() const override;
    int sortOrder() const override { return 0; }
    bool needsUpdate() const override { return true; }
    bool isDfu() const override { return true; }
    QString firmwareVersion() const override { return QString(); }
    QString port() const override { return m_record ? USB::portPath(*m_record) : QString(); }

    USB::P_LibUsbDevice record() const { return m_record; }

private:
    DeviceType m_deviceType = UNKNOWN;
    QString m_serialName;
    USB::P_LibUsbDevice m_record;
};

} // namespace AquenSolvar::Device
