// SPDX-License-Identifier: LicenseRef-Proprietary
#include "dfu/DfuDevice.h"

#include "Common/Paths.h"
#include "USB/USBException.h"
#include "devices/UnitKind.h"
#include "qslog/Log.h"

#include <QCoreApplication>
#include <QDir>

namespace AquenSolvar::Device {

namespace {

// Class requests to the interface (USB DFU 1.1, 3).
constexpr quint8 classWrite = 0x21;
constexpr quint8 classRead = 0xA1;
constexpr quint8 requestDownload = 1;
constexpr quint8 requestGetStatus = 3;
constexpr quint8 requestClearStatus = 4;

constexpr quint16 statusLength = 6;
constexpr unsigned timeoutMs = 1000;

constexpr quint8 configurationDescriptor = 2;
constexpr quint16 configurationBufferSize = 4096;

constexpr quint16 commandBlock = 0; // marks a DfuSe command

DfuDevice::DeviceType bootloaderOf(quint16 productId)
{
    const UnitKind* kind = unitKindOf(productId);
    if (kind == nullptr || !kind->dfu)
        return DfuDevice::UNKNOWN_DFU;
    return kind->type == I_Device::AQUEN_DFU ? DfuDevice::AQUEN_DFU : DfuDevice::SOLVAR_DFU;
}

} // namespace

DfuDevice::DfuDevice(USB::P_LibUsbDevice record, DfuTimes times)
    : USB::USBDevice(std::move(record), 1, 0)
    , m_deviceType(bootloaderOf(descriptor().idProduct))
    , m_times(times)
{
    // A property of an unregistered type silently reads as undefined.
    qRegisterMetaType<uint8_t>("uint8_t");
    qRegisterMetaType<uint16_t>("uint16_t");
    qRegisterMetaType<uint32_t>("uint32_t");
    if (m_deviceType == UNKNOWN_DFU)
        QLOG_WARN() << "Unknown device:" << descriptor().idProduct;
}

void DfuDevice::init()
{
    USB::USBDevice::init();
    readMemoryLayout();
    readFunctionalDescriptor();
    if (!dfuGetStatus()) {
        QLOG_ERROR() << "Failed to read device status.";
        return;
    }
    if (state() == DFU_STATE_ERROR) {
        QLOG_ERROR() << "Error state, resetting";
        if (!dfuClearStatus())
            QLOG_ERROR() << "Failed to clear device error state.";
    }
}

void DfuDevice::readMemoryLayout()
{
    const QList<USB::USBInterface> interfaces = configDescriptor().interfaces();
    for (const USB::USBInterface& interface : interfaces) {
        const QList<USB::USBInterfaceDescriptor> settings = interface.alternateSettings();
        for (const USB::USBInterfaceDescriptor& setting : settings)
            parseInterfaceString(getStringDescriptor(setting.stringIndex()));
    }
}

void DfuDevice::readFunctionalDescriptor()
{
    const QByteArray configuration =
        getDescriptor(configurationDescriptor, 0, configurationBufferSize);
    if (!decodeFunctionalDescriptor(configuration, m_functional))
        QLOG_ERROR() << "The configuration descriptor holds no DFU functional descriptor.";
}

bool DfuDevice::failRequest()
{
    m_reply.status = DFU_STATUS_ERROR_UNKNOWN;
    m_reply.state = DFU_STATE_ERROR;
    return false;
}

bool DfuDevice::dfuGetStatus()
{
    try {
        m_reply = decodeStatusReply(controlRead(classRead, requestGetStatus, 0,
                                                quint16(interfaceNumber()), statusLength,
                                                unsigned(m_times.statusTimeout.count())));
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "USB Error:" << exception.what();
        return failRequest();
    }
    QLOG_DEBUG() << qUtf8Printable(QStringLiteral("Status %1, state %2, poll time-out %3 ms")
                                       .arg(statusName(status()), stateName(state()))
                                       .arg(m_reply.pollTimeout));
    return true;
}

bool DfuDevice::dfuClearStatus()
{
    try {
        controlWrite(classWrite, requestClearStatus, 0, quint16(interfaceNumber()), QByteArray(),
                     timeoutMs);
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "USB Error:" << exception.what();
        return failRequest();
    }
    return true;
}

bool DfuDevice::dfuDownload(quint16 blockNumber, const QByteArray& data)
{
    try {
        controlWrite(classWrite, requestDownload, blockNumber, quint16(interfaceNumber()), data,
                     timeoutMs);
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "USB Error:" << exception.what();
        return failRequest();
    }
    return true;
}

bool DfuDevice::dfuSpecialCommand(quint32 address, SpecialCommand command)
{
    if (!dfuDownload(commandBlock, specialCommandPayload(address, command))) {
        QLOG_ERROR() << "Failed to send special command";
        return false;
    }
    do {
        if (!poll()) {
            QLOG_ERROR() << "Failed to read device status.";
            return false;
        }
    } while (state() == DFU_STATE_DNBUSY);
    if (status() != DFU_STATUS_OK) {
        QLOG_WARN() << "Hm, something went wrong. Expected status: OK, got: "
                    << statusName(status());
        return false;
    }
    return true;
}

bool DfuDevice::poll()
{
    QThread::msleep(static_cast<unsigned long>(m_times.pollSleep.count()));
    QCoreApplication::processEvents();
    const bool succeeded = dfuGetStatus();
    watchLongWork();
    return succeeded;
}

void DfuDevice::watchLongWork()
{
    if (state() != DFU_STATE_DNBUSY) {
        m_busyTime.invalidate();
    } else if (!m_busyTime.isValid()) {
        m_busyTime.start();
        m_nextBusyWarning = m_times.busyWarning;
    } else if (m_times.busyLimit.count() > 0 && m_busyTime.hasExpired(m_times.busyLimit.count())) {
        throw USB::USBException(
            QStringLiteral("The unit has been busy for %1 s.").arg(m_busyTime.elapsed() / 1000));
    } else if (m_busyTime.elapsed() >= m_nextBusyWarning.count()) {
        QLOG_WARN() << "The unit has been busy for" << m_busyTime.elapsed() << "ms";
        m_nextBusyWarning *= 2;
    }
}

void DfuDevice::parseInterfaceString(const QString& text)
{
    m_segments += parseMemoryLayout(text);
}

MemorySegment DfuDevice::segmentForAddress(quint32 address) const
{
    return Device::segmentForAddress(m_segments, address);
}

FirmwareBundle DfuDevice::getBundledTarnwareUpdate() const
{
    const QString directory =
        QDir(Common::Paths::resourceDirectory()).absoluteFilePath(QStringLiteral("Firmwares"));
    QLOG_INFO() << "Looking for bundled firmwares in" << directory;
    if (!QDir(directory).exists())
        return FirmwareBundle();
    const UnitKind* kind = unitKindOf(descriptor().idProduct);
    if (kind == nullptr || !kind->dfu) {
        QLOG_WARN() << "This device type (" << m_deviceType
                    << ") has no associated firmware update file.";
        return FirmwareBundle();
    }
    return newestFirmwareBundle(directory, QString::fromLatin1(kind->firmwarePattern));
}

} // namespace AquenSolvar::Device
