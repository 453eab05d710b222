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

// The answers of a unit's application firmware to its vendor requests, as plain functions on bytes.
// They take whatever a unit sends, of any length. Any thread.

/// The schema version: 32 bits, little-endian; missing bytes count as zero.
qint32 decodeSchemaVersion(const QByteArray& answer);

/// Bytes of the configuration page for a schema version; -1 for a version that has none.
int configurationPageLength(qint32 schemaVersion);

/// The serial name in a configuration page: bytes 16 to 47, UTF-8, ended by the first NUL in them.
QString serialNameInPage(const QByteArray& page);

/// The text before the first byte that is neither a decimal digit nor ".".
QString cleanedFirmwareVersion(const QByteArray& answer);

/// Whether a version text lies before @p target. A text of fewer than three parts does; a part that
/// is no number counts as 0; parts after the third are ignored.
bool isOlderThan(const QString& version, const FirmwareVersion& target);

} // namespace AquenSolvar::Device
