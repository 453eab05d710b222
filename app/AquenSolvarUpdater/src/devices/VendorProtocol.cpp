// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/VendorProtocol.h"

#include <QRegularExpression>
#include <QStringList>
#include <QtEndian>

namespace AquenSolvar::Device {

namespace {

constexpr int serialNameOffset = 16;
constexpr int serialNameLength = 32;

} // namespace

qint32 decodeSchemaVersion(const QByteArray& response)
{
    const QByteArray word = response.leftJustified(4, '\0', true);
    return qint32(qFromLittleEndian<quint32>(word.constData()));
}

int configurationPageLength(qint32 schemaVersion)
{
    switch (schemaVersion) {
    case 4:
        return 64;
    case 5:
        return 74;
    default:
        return -1;
    }
}

QString serialNameInPage(const QByteArray& page)
{
    const QByteArray field = page.mid(serialNameOffset, serialNameLength);
    return QString::fromUtf8(field.constData(),
                             int(qstrnlen(field.constData(), uint(field.size()))));
}

QString cleanedFirmwareVersion(const QByteArray& response)
{
    int length = 0;
    while (length < response.size() &&
           ((response[length] >= '0' && response[length] <= '9') || response[length] == '.'))
        ++length;
    return QString::fromLatin1(response.left(length));
}

bool isOlderThan(const QString& version, const FirmwareVersion& target)
{
    static const QRegularExpression dot(QStringLiteral("\\."));
    const QStringList parts = version.split(dot);
    if (parts.size() < 3)
        return true;
    const int major = parts[0].toInt();
    const int minor = parts[1].toInt();
    const int patch = parts[2].toInt();
    if (major != target.major)
        return major < target.major;
    if (minor != target.minor)
        return minor < target.minor;
    return patch < target.patch;
}

} // namespace AquenSolvar::Device
