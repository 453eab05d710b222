#pragma once

#include "USB/USBDevice.h"
#include "devices/I_Device.h"
#include "devices/VendorProtocol.h"

#include <QEnableSharedFromThis>

namespace AquenSolvar::Device {

/// A unit that runs its application firmware. The constructor opens it and reads what is shown of
/// it over vendor requests, on the calling thread: up to 8 s when the unit does not answer. GUI
/// thread.
class AquenSolvarDevice : public I_Device, public QEnableSharedFromThis<AquenSolvarDevice>
{
    Q_OBJECT

public:
    /// Opens the unit and loads it. A read that fails is logged, ends the loading and leaves the
    /// later fields at their initial values; an unknown product id opens the unit and reads
    /// nothing.
    /// @throws USB::USBException when the unit cannot be opened.
    explicit AquenSolvarDevice(USB::P_LibUsbDevice record, QObject* parent = nullptr);

    DeviceType deviceType() const override { return m_deviceType; }
    QString serialName() const override { return m_serialName; }
    QString sectionName() const override;
    int sortOrder() const override { return 1; }
    bool needsUpdate() const override { return m_needsUpdate; }
    bool isDfu() const override { return false; }

    /// Makes the unit restart into its bootloader: it leaves the bus and comes back as another
    /// device. False, with a log line, when the request failed.
    Q_INVOKABLE bool dropToBootloader();

    /// The steps of loading, in the constructor's order. Each is true on success.
    bool loadSchemaVersion();
    bool loadConfig();
    bool loadFirmwareVersion();
    bool loadFirmwareRevision();

    QString firmwareVersion() const { return m_firmwareVersion; }
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
