// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/AquenSolvarDevice.h"

#include "USB/USBException.h"
#include "devices/UnitKind.h"
#include "qslog/Log.h"

#include <QCoreApplication>

namespace AquenSolvar::Device {

namespace {

// bmRequestType of vendor requests to the interface (USB 2.0, 9.3.1).
constexpr quint8 vendorRead = 0xC1;
constexpr quint8 vendorWrite = 0x41;

constexpr quint8 requestFirmwareVersion = 0x24;
constexpr quint8 requestFirmwareRevision = 0x25;
constexpr quint8 requestDropToBootloader = 0x26;
constexpr quint8 requestConfigurationPage = 0x27;
constexpr quint8 requestSchemaVersion = 0x29;

constexpr quint16 firmwareVersionLength = 8;
constexpr quint16 firmwareRevisionLength = 64;
constexpr quint16 schemaVersionLength = 4;

constexpr unsigned timeoutMs = 1000;
constexpr unsigned configurationPageTimeoutMs = 5000;

// Units with an older version need an update. Independent of the shipped bundles.
constexpr FirmwareVersion currentFirmware = {1, 3, 1};

} // namespace

AquenSolvarDevice::AquenSolvarDevice(USB::P_LibUsbDevice record, QObject* parent)
    : I_Device(parent)
    , m_usb(std::move(record), 1, 0)
    , m_targetVersion(currentFirmware)
{
    const UnitKind* kind = unitKindOf(m_usb.descriptor().idProduct);
    if (kind != nullptr && !kind->dfu)
        m_deviceType = kind->type;
    m_usb.init();
    if (m_deviceType == UNKNOWN)
        return;
    if (!loadSchemaVersion())
        QLOG_ERROR() << "Failed to load schema version";
    else if (!loadConfig())
        QLOG_ERROR() << "Failed to load config page";
    else if (!loadFirmwareVersion())
        QLOG_ERROR() << "Failed to load firmware version";
    else if (!loadFirmwareRevision())
        QLOG_ERROR() << "Failed to load firmware revision";
    QLOG_INFO() << kind->name << m_serialName << "on port" << USB::portPath(*m_usb.record())
                << "runs firmware" << m_firmwareVersion << m_firmwareRevision;
}

QString AquenSolvarDevice::sectionName() const
{
    //: Heading in the list of units (45 letters; CJK 27): units that run normally.
    return tr("Devices");
}

bool AquenSolvarDevice::loadSchemaVersion()
{
    try {
        m_schemaVersion =
            decodeSchemaVersion(readVendor(requestSchemaVersion, schemaVersionLength, timeoutMs));
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "Failed to read schema version:" << exception.what();
        return false;
    }
    QLOG_INFO() << "Schema Version:" << m_schemaVersion;
    return true;
}

bool AquenSolvarDevice::loadConfig()
{
    const int length = configurationPageLength(m_schemaVersion);
    if (length < 1) {
        QLOG_ERROR() << "Unable to read configuration.";
        return false;
    }
    try {
        const QByteArray page =
            readVendor(requestConfigurationPage, quint16(length), configurationPageTimeoutMs);
        m_serialName = serialNameInPage(page);
    } catch (const USB::USBException& exception) {
        //: Title of a card (30 letters; CJK 15): a unit that did not report its name.
        m_serialName = QString::fromLatin1(QT_TRANSLATE_NOOP("UnitTitle", "Unknown Device"));
        QLOG_ERROR() << "Failed to read config:" << exception.what();
        return false;
    }
    QLOG_INFO() << "Serial name:" << m_serialName;
    return true;
}

bool AquenSolvarDevice::loadFirmwareVersion()
{
    QByteArray response;
    try {
        response = readVendor(requestFirmwareVersion, firmwareVersionLength, timeoutMs);
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "Failed to load firmware version:" << exception.what();
        return false;
    }
    QLOG_INFO() << "Result length:" << response.size();
    m_firmwareVersion = cleanedFirmwareVersion(response);
    QLOG_INFO() << "Firmware version:" << m_firmwareVersion;
    QLOG_INFO() << "Length: " << m_firmwareVersion.split(QLatin1Char('.')).size();
    m_needsUpdate = isOlderThan(m_firmwareVersion, m_targetVersion);
    return true;
}

bool AquenSolvarDevice::loadFirmwareRevision()
{
    try {
        const QByteArray response =
            readVendor(requestFirmwareRevision, firmwareRevisionLength, timeoutMs);
        m_firmwareRevision = QString::fromUtf8(
            response.constData(), int(qstrnlen(response.constData(), uint(response.size()))));
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "Failed to load firmware revision:" << exception.what();
        return false;
    }
    return true;
}

bool AquenSolvarDevice::dropToBootloader()
{
    QLOG_INFO() << "Dropping to boot loader:" << m_serialName << "on port" << port()
                << "with firmware" << m_firmwareVersion;
    try {
        const int result =
            m_usb.controlWrite(vendorWrite, requestDropToBootloader, 0,
                               quint16(m_usb.interfaceNumber()), QByteArray(), timeoutMs);
        QLOG_INFO() << "Result of drop to bootloader:" << result;
    } catch (const USB::USBException& exception) {
        QLOG_ERROR() << "Failed to reset device into bootloader:" << exception.what();
        return false;
    }
    return true;
}

QByteArray AquenSolvarDevice::readVendor(quint8 request, quint16 length, unsigned timeout)
{
    return m_usb.controlRead(vendorRead, request, 0, quint16(m_usb.interfaceNumber()), length,
                             timeout);
}

} // namespace AquenSolvar::Device
