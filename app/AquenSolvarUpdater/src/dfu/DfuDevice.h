#pragma once

#include "USB/USBDevice.h"
#include "dfu/DfuProtocol.h"
#include "dfu/DfuSeLayout.h"
#include "firmware/FirmwareBundle.h"

#include <QElapsedTimer>
#include <QEnableSharedFromThis>

#include <chrono>

namespace AquenSolvar::Device {

/// A unit's running bootloader: the requests of USB DFU 1.1 that a firmware download needs, with
/// the set-address and page-erase commands of the DfuSe application note. Lives behind a shared
/// pointer whose deleter is QObject::deleteLater().
///
/// One thread at a time: the GUI thread sets it up, then the download job's thread drives it.
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
    /// Whose bootloader this is.
    enum DeviceType
    {
        AQUEN_DFU = 0,
        SOLVAR_DFU = 1,
        UNKNOWN_DFU = 2
    };
    Q_ENUM(DeviceType)

    /// Flash address that the first byte of a firmware image is written to.
    static constexpr quint32 imageStartAddress = 0x08003800;
    /// The fixed pause before each status read of a wait. The unit's own poll time-out is not used.
    static constexpr std::chrono::milliseconds defaultPollSleep{50};
    /// How long a unit may take to tell its status: some are deaf while they erase.
    static constexpr std::chrono::milliseconds defaultStatusTimeout{100000};
    /// After how long a wait for a busy unit is logged, and again each time that it has doubled.
    static constexpr std::chrono::milliseconds defaultBusyWarning{10000};

    /// Opens nothing. @throws USB::USBException when the device descriptor cannot be read.
    explicit DfuDevice(USB::P_LibUsbDevice record);

    /// Opens the unit, reads the memory layout of every alternate setting and the DFU functional
    /// descriptor, then the status; an error state is cleared once. Protocol problems are logged
    /// and leave the fields as they are.
    /// @throws USB::USBException when opening or a descriptor read fails.
    void init() override;

    /// One class request each. False after a USB failure, which is logged and leaves status 14 and
    /// state 10. Never throw.
    bool dfuGetStatus();
    bool dfuClearStatus();
    bool dfuDownload(quint16 blockNumber, const QByteArray& data);

    /// Sends a DfuSe command and waits until the unit is no longer busy with it. True when the unit
    /// then reports status OK. A failed status is not cleared: the caller decides.
    bool dfuSpecialCommand(quint32 address, SpecialCommand command);

    /// One round of a wait: the poll sleep, one pass over the calling thread's pending events, then
    /// dfuGetStatus(). A unit that stays busy is waited for without end, but not without a word:
    /// see defaultBusyWarning.
    bool poll();

    /// Appends the segments that one interface string describes; see parseMemoryLayout().
    void parseInterfaceString(const QString& text);
    MemorySegment segmentForAddress(quint32 address) const;

    /// The newest valid bundle that was shipped for this unit; empty data when there is none.
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

    /// The pause of poll(), before the unit is used.
    void setPollSleep(std::chrono::milliseconds sleep) { m_pollSleep = sleep; }

    /// The time-out of dfuGetStatus(), before the unit is used.
    void setStatusTimeout(std::chrono::milliseconds timeout) { m_statusTimeout = timeout; }

    /// When poll() first logs that the unit is still busy, before the unit is used.
    void setBusyWarning(std::chrono::milliseconds after) { m_busyWarning = after; }

signals:
    // For observers; the requests change the fields without a signal.
    void stateChanged(AquenSolvar::Device::DFUState state);
    void statusChanged(AquenSolvar::Device::DFUStatus status);

private:
    void readMemoryLayout();
    void readFunctionalDescriptor();
    bool failRequest();
    void warnOfLongWork();

    DfuStatusReply m_reply;
    DfuFunctionalDescriptor m_functional;
    DeviceType m_deviceType = UNKNOWN_DFU;
    quint32 m_flashStartAddress = imageStartAddress;
    QList<MemorySegment> m_segments;
    std::chrono::milliseconds m_pollSleep = defaultPollSleep;
    std::chrono::milliseconds m_statusTimeout = defaultStatusTimeout;
    std::chrono::milliseconds m_busyWarning = defaultBusyWarning;
    std::chrono::milliseconds m_nextBusyWarning{0};
    QElapsedTimer m_busyTime; // valid while the unit says that it is busy
};

} // namespace AquenSolvar::Device
