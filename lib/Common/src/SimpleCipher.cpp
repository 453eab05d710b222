// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/SimpleCipher.h"

#include "Common/BoundedUncompress.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QtDebug>
#include <QtEndian>

#include <cstdlib>

namespace Common {

namespace {

constexpr char envelopeVersion = 3;
constexpr int smallestEnvelope = 3;
constexpr quint8 compressedFlag = 0x01;
constexpr quint8 checksumFlag = 0x02;
constexpr quint8 hashFlag = 0x04;
constexpr int checksumSize = 2;
constexpr int hashSize = 20;
constexpr int keyPartCount = 8;

QByteArray checksumOf(const QByteArray& payload)
{
    const quint16 checksum = qChecksum(payload.constData(), static_cast<uint>(payload.size()));
    QByteArray bytes(checksumSize, '\0');
    qToBigEndian(checksum, bytes.data());
    return bytes;
}

QByteArray hashOf(const QByteArray& payload)
{
    return QCryptographicHash::hash(payload, QCryptographicHash::Sha1);
}

void scramble(QByteArray& bytes, const QVector<quint8>& keyParts)
{
    quint8 last = 0;
    int position = 0;
    for (char& byte : bytes) {
        last ^=
            static_cast<quint8>(static_cast<quint8>(byte) ^ keyParts[position++ % keyPartCount]);
        byte = static_cast<char>(last);
    }
}

void unscramble(QByteArray& bytes, const QVector<quint8>& keyParts)
{
    quint8 last = 0;
    int position = 0;
    for (char& byte : bytes) {
        const auto scrambled = static_cast<quint8>(byte);
        byte = static_cast<char>(scrambled ^ last ^ keyParts[position++ % keyPartCount]);
        last = scrambled;
    }
}

// Removes the integrity bytes from the front. False if they are missing or do not match the rest.
bool takeIntegrityBytes(QByteArray& bytes, quint8 flags)
{
    if ((flags & (checksumFlag | hashFlag)) == 0)
        return true;
    const bool checksum = (flags & checksumFlag) != 0;
    const int size = checksum ? checksumSize : hashSize;
    if (bytes.size() < size)
        return false;
    const QByteArray stored = bytes.left(size);
    bytes.remove(0, size);
    return stored == (checksum ? checksumOf(bytes) : hashOf(bytes));
}

} // namespace

SimpleCipher::SimpleCipher()
{
    std::srand(static_cast<unsigned>(QDateTime::currentMSecsSinceEpoch() & 0xFFFF));
}

SimpleCipher::SimpleCipher(quint64 key)
    : SimpleCipher()
{
    for (int part = 0; part < keyPartCount; ++part)
        m_keyParts.append(static_cast<quint8>((key >> (8 * part)) & 0xFF));
}

QByteArray SimpleCipher::fail(Error error, const char* warning)
{
    if (warning != nullptr)
        qWarning("%s", warning);
    m_lastError = error;
    return {};
}

QByteArray SimpleCipher::encryptToByteArray(QByteArray plain)
{
    if (m_keyParts.isEmpty())
        return fail(Error::NoKeySet, "No key set.");

    quint8 flags = 0;
    if (m_compressionMode != CompressionMode::Never) {
        const QByteArray compressed = qCompress(plain);
        if (m_compressionMode == CompressionMode::Always || compressed.size() < plain.size()) {
            plain = compressed;
            flags |= compressedFlag;
        }
    }

    QByteArray buffer(1, static_cast<char>(std::rand() & 0xFF));
    if (m_protectionMode == ProtectionMode::Checksum) {
        flags |= checksumFlag;
        buffer += checksumOf(plain);
    } else if (m_protectionMode == ProtectionMode::Hash) {
        flags |= hashFlag;
        buffer += hashOf(plain);
    }
    buffer += plain;
    scramble(buffer, m_keyParts);

    m_lastError = Error::NoError;
    return QByteArray(1, envelopeVersion) + static_cast<char>(flags) + buffer;
}

QByteArray SimpleCipher::decryptToByteArray(const QByteArray& envelope)
{
    if (m_keyParts.isEmpty())
        return fail(Error::NoKeySet, "No key set.");
    if (envelope.size() < smallestEnvelope || envelope.at(0) != envelopeVersion)
        return fail(Error::UnknownVersion, "Invalid version or not a cyphertext.");

    const auto flags = static_cast<quint8>(envelope.at(1));
    QByteArray bytes = envelope.mid(2);
    unscramble(bytes, m_keyParts);
    bytes.remove(0, 1);
    if (!takeIntegrityBytes(bytes, flags))
        return fail(Error::IntegrityFailed);
    if ((flags & compressedFlag) != 0) {
        const std::optional<QByteArray> plain = boundedUncompress(bytes, m_maximumPlainSize);
        if (!plain)
            return fail(Error::IntegrityFailed);
        bytes = *plain;
    }
    m_lastError = Error::NoError;
    return bytes;
}

QString SimpleCipher::decryptToString(const QByteArray& envelope)
{
    const QByteArray plain = decryptToByteArray(envelope);
    // With its length: a NUL byte is no end.
    return QString::fromUtf8(plain.constData(), plain.size());
}

} // namespace Common
