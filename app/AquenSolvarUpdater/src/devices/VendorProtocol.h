// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QString>

namespace AquenSolvar::Device {

/// A firmware version of three numbers.
struct FirmwareVersion
{
    int major;
    int minor;
    int patch;
};

// Decoders of the responses of a unit's application firmware to vendor requests. They accept any
// bytes of any length. Pure; any thread.

/// The version of the configuration's schema: 32 bits, little-endian; missing bytes count as zero.
qint32 decodeSchemaVersion(const QByteArray& response);

/// Length of the configuration page in bytes; -1 if this schema version has none.
int configurationPageLength(qint32 schemaVersion);

/// The serial name in a configuration page: bytes 16 to 47, UTF-8, ended by the first NUL in them.
QString serialNameInPage(const QByteArray& page);

/// The text before the first byte that is neither a decimal digit nor ".".
QString cleanedFirmwareVersion(const QByteArray& response);

/// Whether a version text is older than @p target. True for a text of fewer than three parts. A
/// part that is no number counts as 0; parts after the third are ignored.
bool isOlderThan(const QString& version, const FirmwareVersion& target);

} // namespace AquenSolvar::Device
