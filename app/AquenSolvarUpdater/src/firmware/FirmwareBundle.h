// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QString>

namespace AquenSolvar::Device {

/// A firmware image, as written to flash, and its version. Empty data means "no firmware".
struct FirmwareBundle
{
    qint32 version = 0;
    QByteArray data;
};

/// Result of reading a bundle. The codes are fixed; 1 is not used.
enum FirmwareReadResult : int
{
    FirmwareRead = 0,
    FirmwareFileUnreadable = 2, ///< cannot be opened or read, is no regular file, or is too large
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
/// image's length as signed 32-bit and its CRC-16 (ISO 3309) as signed 16-bit. Reads all fields,
/// then checks them in this order. A missing field counts as zero or empty, so a truncated bundle
/// always fails, at the first field that it lacks. Ignores bytes after the last field. Memory use
/// is bounded regardless of the lengths in the bytes. Pure; any thread.
/// @return a FirmwareReadResult; @p out changes only when that is FirmwareRead
int parseFirmwareBundle(const QByteArray& bytes, FirmwareBundle& out);

/// As parseFirmwareBundle(), from a file. Any thread.
int readFirmwareBundle(QString path, FirmwareBundle& out);

/// The reason for a FirmwareReadResult, in English, for people.
QString firmwareReadResultText(int result);

/// A bundle's version for people: 10301 is "1.3.1". A number below 10000 does not state a firmware
/// version and stays a number. Pure; any thread.
QString bundleVersionText(qint32 version);

/// The bytes of a bundle file. parseFirmwareBundle() returns the same version and image for any
/// image below largestFirmwareBundle. Pure; any thread.
QByteArray packFirmwareBundle(qint32 version, const QByteArray& image);

/// The newest bundle among the directory's entries that match the pattern ("aquen-v*.tarnware").
/// Entries are read in order of their names, ignoring case. Only a strictly greater version
/// replaces the previous choice: a version below 1 is never chosen, and of equal versions the first
/// counts. Logs each entry and each valid bundle; skips entries that cannot be read. Any thread.
/// @return { 0, empty } when the directory is missing or nothing is chosen
FirmwareBundle newestFirmwareBundle(const QString& firmwareDirectory, const QString& namePattern);

} // namespace AquenSolvar::Device
