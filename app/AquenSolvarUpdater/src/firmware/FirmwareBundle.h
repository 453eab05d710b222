#pragma once

#include <QByteArray>
#include <QString>

namespace AquenSolvar::Device {

/// A firmware image as it goes into flash, and its version. Empty data means "no firmware".
struct FirmwareBundle
{
    qint32 version = 0;
    QByteArray data;
};

/// What reading a bundle came to. The codes are fixed; 1 is not used.
enum FirmwareReadResult : int
{
    FirmwareRead = 0,
    FirmwareFileUnreadable = 2, ///< cannot be opened, no regular file, or above the largest size
    FirmwareMagicWrong = 3,
    FirmwareFormatUnknown = 4,
    FirmwareCipherFailed = 5, ///< the cipher rejects the payload, or it unpacks to too much
    FirmwareLengthWrong = 6,
    FirmwareChecksumWrong = 7
};

/// The largest bundle file, and the largest image that a payload may unpack to, in bytes.
constexpr int largestFirmwareBundle = 16 * 1024 * 1024;

/// Reads a bundle: a Qt data stream (big-endian) of the magic "tarnware" as QString, the format
/// version 1 and the firmware version as signed 32-bit, the enciphered image as QByteArray, the
/// image's length as signed 32-bit and its CRC-16 (ISO 3309) as signed 16-bit. All fields are read
/// before any is checked, in this order; a field that the bytes end before counts as zero or empty,
/// so a bundle that was cut short fails the check of the first field that it lacks, and always
/// fails. Bytes after the last field are passed over. Answers a FirmwareReadResult and fills `out`
/// only when that is FirmwareRead. Memory stays bounded whatever the lengths in the bytes claim.
/// Pure; any thread.
int parseFirmwareBundle(const QByteArray& bytes, FirmwareBundle& out);

/// As parseFirmwareBundle(), from a file. Any thread.
int readFirmwareBundle(QString path, FirmwareBundle& out);

/// Why a bundle could not be read, for people, in English.
QString firmwareReadResultText(int result);

/// The bytes of a bundle file. The two directions agree for any version and any image below
/// largestFirmwareBundle.
QByteArray packFirmwareBundle(qint32 version, const QByteArray& image);

/// The newest bundle among the directory's entries that match the pattern ("aquen-v*.tarnware"),
/// or { 0, empty } when the directory is missing or none is chosen. Entries are taken by name
/// without regard to case; only a strictly greater version replaces the one before, so a version
/// below 1 is never chosen and of equal ones the first counts. Each file met and each valid bundle
/// is logged; one that cannot be read is passed over. Any thread.
FirmwareBundle newestFirmwareBundle(const QString& firmwareDirectory, const QString& namePattern);

} // namespace AquenSolvar::Device
