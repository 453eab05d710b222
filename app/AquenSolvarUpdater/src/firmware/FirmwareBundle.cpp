// SPDX-License-Identifier: LicenseRef-Proprietary
#include "firmware/FirmwareBundle.h"

#include "Common/SimpleCipher.h"
#include "qslog/Log.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace AquenSolvar::Device {

namespace {

const QString bundleMagic = QStringLiteral("tarnware");
constexpr qint32 bundleFormat = 1;

qint16 checksumOf(const QByteArray& image)
{
    return static_cast<qint16>(qChecksum(image.constData(), static_cast<uint>(image.size())));
}

} // namespace

int parseFirmwareBundle(const QByteArray& bytes, FirmwareBundle& out)
{
    QString magic;
    qint32 format = 0;
    qint32 version = 0;
    QByteArray payload;
    qint32 length = 0;
    qint16 checksum = 0;
    QDataStream stream(bytes);
    stream >> magic >> format >> version >> payload >> length >> checksum;

    if (magic != bundleMagic)
        return FirmwareMagicWrong;
    if (format != bundleFormat)
        return FirmwareFormatUnknown;

    Common::SimpleCipher cipher(Common::defaultCipherKey);
    cipher.setMaximumPlainSize(largestFirmwareBundle);
    const QByteArray image = cipher.decryptToByteArray(payload);
    if (cipher.lastError() != Common::SimpleCipher::Error::NoError)
        return FirmwareCipherFailed;
    if (image.size() != length)
        return FirmwareLengthWrong;
    // If the image's checksum is zero, the comparison alone would accept a missing one.
    if (checksumOf(image) != checksum || stream.status() != QDataStream::Ok)
        return FirmwareChecksumWrong;

    out.version = version;
    out.data = image;
    return FirmwareRead;
}

int readFirmwareBundle(QString path, FirmwareBundle& out)
{
    const QString consumed = std::move(path);
    QFile file(consumed);
    // Opening a named pipe would block until another process writes to it.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return FirmwareFileUnreadable;
    const QByteArray bytes = file.read(qint64(largestFirmwareBundle) + 1);
    if (file.error() != QFileDevice::NoError || bytes.size() > largestFirmwareBundle)
        return FirmwareFileUnreadable;
    return parseFirmwareBundle(bytes, out);
}

QString firmwareReadResultText(int result)
{
    switch (result) {
    case FirmwareRead:
        return QStringLiteral("valid");
    case FirmwareFileUnreadable:
        return QStringLiteral("the file cannot be read or is too large");
    case FirmwareMagicWrong:
        return QStringLiteral("the magic is not \"tarnware\"");
    case FirmwareFormatUnknown:
        return QStringLiteral("the format version is not 1");
    case FirmwareCipherFailed:
        return QStringLiteral("the image cannot be deciphered");
    case FirmwareLengthWrong:
        return QStringLiteral("the image length differs from the stored one");
    case FirmwareChecksumWrong:
        return QStringLiteral("the checksum differs from the stored one");
    default:
        return QStringLiteral("unknown result %1").arg(result);
    }
}

QString bundleVersionText(qint32 version)
{
    if (version < 10000)
        return QString::number(version);
    return QStringLiteral("%1.%2.%3")
        .arg(version / 10000)
        .arg(version / 100 % 100)
        .arg(version % 100);
}

QByteArray packFirmwareBundle(qint32 version, const QByteArray& image)
{
    Common::SimpleCipher cipher(Common::defaultCipherKey);
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << bundleMagic << bundleFormat << version << cipher.encryptToByteArray(image)
           << static_cast<qint32>(image.size()) << checksumOf(image);
    return bytes;
}

FirmwareBundle newestFirmwareBundle(const QString& firmwareDirectory, const QString& namePattern)
{
    FirmwareBundle best;
    const QDir directory(firmwareDirectory);
    if (!directory.exists())
        return best;
    const QStringList names = directory.entryList({namePattern});
    for (const QString& name : names) {
        QLOG_INFO() << "Found file:" << name;
        FirmwareBundle bundle;
        if (readFirmwareBundle(directory.absoluteFilePath(name), bundle) != FirmwareRead)
            continue;
        QLOG_INFO() << "Found bundled tarnware" << name << "with version" << bundle.version;
        if (bundle.version > best.version)
            best = bundle;
    }
    return best;
}

} // namespace AquenSolvar::Device
