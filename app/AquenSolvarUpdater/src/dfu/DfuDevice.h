// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/USBDevice.h"
#include "dfu/DfuProtocol.h"
#include "dfu/DfuSeLayout.h"
#include "dfu/DfuTimes.h"
#include "firmware/FirmwareBundle.h"

#include <QElapsedTimer>
#include <QEnableSharedFromThis>

namespace AquenSolvar::Device {

/// A unit whose bootloader runs: the requests of USB DFU 1.1 that a firmware download needs, with
/// the set-address and page-erase commands of the DfuSe application note. Owned by shared pointers
/// whose deleter is QObject::deleteLater().
///
/// One thread at a time: the GUI thread sets it up, then the download job's thread uses it.
/// abortTransfers() may be called from any thread.
class DfuDevice : public USB::USBDevice, public QEnableSharedFromThis<DfuDevice>
{
    Q_OBJECT
    Q_PROPERTY(uint8_t status READ statusByte)
    Q_PROPERTY(uint8_t state READ stateByte)
    Q_PROPERTY(uint32_t pollTimeout READ pollTimeout)
    Q_PROPERTY(uint16_t transferSize READ transferSize)
    Q_PROPERTY(uint16_t detachTimeout READ detachTimeout)
    Q_PROPERTY(bool uploadCapable READ uploadCapable)
    Q_PROPERTY(bool downloadCapable READ downloadCapable)
    Q_PROPERTY(bool manifestationTolerant READ manifestationTolerant)

public:
    /// The unit kind that the bootloader belongs to.
    enum DeviceType
    {
        AQUEN_DFU = 0,
        SOLVAR_DFU = 1,
        UNKNOWN_DFU = 2
    };
    Q_ENUM(DeviceType)

    /// Flash address of the first byte of a firmware image.
    static constexpr quint32 imageStartAddress = 0x08003800;

    /// Does not open the unit. @throws USB::USBException when the device descriptor cannot be read.
    explicit DfuDevice(USB::P_LibUsbDevice record, DfuTimes times = {});

    /// Opens the unit, reads the memory layout of every alternate setting and the DFU functional
    /// descriptor, then the status; an error state is cleared once. Protocol problems are logged
    /// and leave the fields unchanged.
    /// @throws USB::USBException when opening or a descriptor read fails.
    void init() override;

    /// One class request each. False after a USB failure, which is logged and sets status 14 and
    /// state 10. They never throw.
    bool dfuGetStatus();
    bool dfuClearStatus();
    bool dfuDownload(quint16 blockNumber, const QByteArray& data);

    /// Sends a DfuSe command and waits until the unit is no longer busy with it. True if the unit
    /// then reports status OK. An error status is not cleared. @throws as poll()
    bool dfuSpecialCommand(quint32 address, SpecialCommand command);

    /// One round of a wait: the poll sleep, one pass over the calling thread's pending events, then
    /// dfuGetStatus(). Callers repeat it while the unit is busy; a warning is logged after
    /// DfuTimes::busyWarning.
    /// @throws USB::USBException when the unit has been busy for DfuTimes::busyLimit
    bool poll();

    /// Appends the segments that one interface string describes; see parseMemoryLayout().
    void parseInterfaceString(const QString& text);

    /// The first segment that contains the address; three zeros if none does.
    MemorySegment segmentForAddress(quint32 address) const;

    /// The newest valid bundle that was shipped for this unit kind; empty data if there is none.
    FirmwareBundle getBundledTarnwareUpdate() const;

    qint32 status() const { return m_reply.status; }
    qint32 state() const { return m_reply.state; }
    quint8 statusByte() const { return quint8(m_reply.status); }
    quint8 stateByte() const { return quint8(m_reply.state); }
    quint32 pollTimeout() const { return m_reply.pollTimeout; }
    quint8 attributes() const { return m_functional.attributes; }
    quint16 detachTimeout() const { return m_functional.detachTimeout; }
    quint16 transferSize() const { return m_functional.transferSize; }
    bool uploadCapable() const { return m_functional.canUpload(); }
    bool downloadCapable() const { return m_functional.canDownload(); }
    bool manifestationTolerant() const { return m_functional.isManifestationTolerant(); }
    DeviceType deviceType() const { return m_deviceType; }
    quint32 flashStartAddress() const { return m_flashStartAddress; }
    const QList<MemorySegment>& segments() const { return m_segments; }

signals:
    // Never emitted: the requests change the fields without a signal.
    void stateChanged(AquenSolvar::Device::DFUState state);
    void statusChanged(AquenSolvar::Device::DFUStatus status);

private:
    void readMemoryLayout();
    void readFunctionalDescriptor();
    bool failRequest();
    void watchLongWork();

    DfuStatusReply m_reply;
    DfuFunctionalDescriptor m_functional;
    DeviceType m_deviceType = UNKNOWN_DFU;
    quint32 m_flashStartAddress = imageStartAddress;
    QList<MemorySegment> m_segments;
    DfuTimes m_times;
    std::chrono::milliseconds m_nextBusyWarning{0};
    QElapsedTimer m_busyTime; // valid while the unit reports busy
};

} // namespace AquenSolvar::Device
