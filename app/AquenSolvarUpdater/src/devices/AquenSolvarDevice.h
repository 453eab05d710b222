// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/USBDevice.h"
#include "devices/I_Device.h"
#include "devices/VendorProtocol.h"

#include <QEnableSharedFromThis>

namespace AquenSolvar::Device {

/// A unit that runs its application firmware. The constructor opens it and reads what the user
/// interface shows, with vendor requests. It blocks up to 8 s if the unit does not respond. GUI
/// thread.
class AquenSolvarDevice : public I_Device, public QEnableSharedFromThis<AquenSolvarDevice>
{
    Q_OBJECT

public:
    /// Opens and reads the unit. A failed read is logged and ends the reading; the remaining fields
    /// keep their initial values. With an unknown product id, only opens the unit.
    /// @throws USB::USBException when the unit cannot be opened
    explicit AquenSolvarDevice(USB::P_LibUsbDevice record, QObject* parent = nullptr);

    DeviceType deviceType() const override { return m_deviceType; }
    QString serialName() const override { return m_serialName; }
    QString sectionName() const override;
    int sortOrder() const override { return 1; }
    bool needsUpdate() const override { return m_needsUpdate; }
    bool isDfu() const override { return false; }
    QString firmwareVersion() const override { return m_firmwareVersion; }
    QString port() const override { return USB::portPath(*m_usb.record()); }

    /// Restarts the unit into its bootloader: it leaves the bus and returns as another device.
    /// @return false, with an error in the log, when the request fails
    Q_INVOKABLE bool dropToBootloader();

    // The constructor's reads, in its order. Each logs its failure and then returns false.
    bool loadSchemaVersion();
    bool loadConfig();
    bool loadFirmwareVersion();
    bool loadFirmwareRevision();

    QString firmwareRevision() const { return m_firmwareRevision; }

private:
    QByteArray readVendor(quint8 request, quint16 length, unsigned timeoutMs);

    USB::USBDevice m_usb;
    qint32 m_schemaVersion = -1;
    DeviceType m_deviceType = UNKNOWN;
    QString m_serialName;
    QString m_firmwareVersion;
    QString m_firmwareRevision;
    bool m_needsUpdate = false;
    FirmwareVersion m_targetVersion;
};

} // namespace AquenSolvar::Device
