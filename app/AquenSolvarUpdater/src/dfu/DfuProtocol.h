// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace AquenSolvar::Device {

/// Status codes of the bootloader: bStatus of USB DFU 1.1, 6.1.2.
enum DFUStatus : qint32
{
    DFU_STATUS_OK = 0,
    DFU_STATUS_ERROR_TARGET = 1,
    DFU_STATUS_ERROR_FILE = 2,
    DFU_STATUS_ERROR_WRITE = 3,
    DFU_STATUS_ERROR_ERASE = 4,
    DFU_STATUS_ERROR_CHECK_ERASED = 5,
    DFU_STATUS_ERROR_PROG = 6,
    DFU_STATUS_ERROR_VERIFY = 7,
    DFU_STATUS_ERROR_ADDRESS = 8,
    DFU_STATUS_ERROR_NOTDONE = 9,
    DFU_STATUS_ERROR_FIRMWARE = 10,
    DFU_STATUS_ERROR_VENDOR = 11,
    DFU_STATUS_ERROR_USBR = 12,
    DFU_STATUS_ERROR_POR = 13,
    DFU_STATUS_ERROR_UNKNOWN = 14,
    DFU_STATUS_ERROR_STALLEDPKT = 15
};

/// States of the bootloader: bState of USB DFU 1.1, 6.1.2.
enum DFUState : qint32
{
    DFU_STATE_APP_IDLE = 0,
    DFU_STATE_APP_DETACH = 1,
    DFU_STATE_IDLE = 2,
    DFU_STATE_DNLOAD_SYNC = 3,
    DFU_STATE_DNBUSY = 4,
    DFU_STATE_DNLOAD_IDLE = 5,
    DFU_STATE_MANIFEST_SYNC = 6,
    DFU_STATE_MANIFEST = 7,
    DFU_STATE_MANIFEST_WAIT_RESET = 8,
    DFU_STATE_UPLOAD_IDLE = 9,
    DFU_STATE_ERROR = 10
};

/// Commands that the DfuSe application note sends as a download of block 0.
enum SpecialCommand : qint32
{
    SET_ADDRESS = 0,
    ERASE_PAGE = 1
};

/// Text of a status or state code for log lines; "Illegal status" and "Illegal state" for codes
/// outside the enumerations. Any thread.
QString statusName(int status);
QString stateName(int state);

/// The response to GETSTATUS (USB DFU 1.1, 6.1.2) without iString.
struct DfuStatusReply
{
    qint32 status = 0;
    quint32 pollTimeout = 0; ///< milliseconds
    qint32 state = 0;
};

/// Decodes the six bytes of a GETSTATUS response; missing bytes count as zero. Each byte is
/// sign-extended before the poll time-out is assembled, so that a byte of 0x80 or more sets all
/// higher bits. Any thread.
DfuStatusReply decodeStatusReply(const QByteArray& response);

/// The DFU functional descriptor (USB DFU 1.1, 4.1.3).
struct DfuFunctionalDescriptor
{
    quint8 attributes = 0;
    quint16 detachTimeout = 0; ///< milliseconds
    quint16 transferSize = 0;  ///< bytes
    bool canDownload() const { return (attributes & 0x01) != 0; }
    bool canUpload() const { return (attributes & 0x02) != 0; }
    bool isManifestationTolerant() const { return (attributes & 0x04) != 0; }
};

/// Decodes the last nine bytes of a configuration (USB 2.0, 9.6.3), cut to its stated total length,
/// as the functional descriptor. Bytes are sign-extended as in decodeStatusReply(). Any thread.
/// @return false, with @p out unchanged, if fewer than nine bytes remain.
bool decodeFunctionalDescriptor(const QByteArray& configuration, DfuFunctionalDescriptor& out);

/// The five bytes of a DfuSe command: the code, then the address, least significant byte first. The
/// code of an unknown command is 0. Any thread.
QByteArray specialCommandPayload(quint32 address, SpecialCommand command);

} // namespace AquenSolvar::Device
