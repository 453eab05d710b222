// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace Common {

/// The key of all enciphered data that ships with the program.
constexpr quint64 defaultCipherKey = 0x5A2E7B19;

/// A light scrambler for data that ships with the program: obfuscation, not cryptography. Wraps
/// data in an envelope: version 3, a flags byte, and then, scrambled with the key, a random byte, a
/// checksum or digest of the stored payload, and the payload, which may be compressed. Shipped
/// files depend on this byte layout. Each object belongs to one thread.
class SimpleCipher
{
public:
    enum class CompressionMode
    {
        Auto = 0, ///< compressed only where that makes the data strictly shorter
        Always = 1,
        Never = 2
    };
    enum class ProtectionMode
    {
        None = 0,
        Checksum = 1, ///< CRC-16 of ISO 3309, as qChecksum() computes it
        Hash = 2      ///< SHA-1
    };
    enum class Error
    {
        NoError = 0,
        NoKeySet = 1,       ///< created without a key
        UnknownVersion = 2, ///< not an envelope of version 3
        IntegrityFailed = 3 ///< damaged, or unpacks to more than maximumPlainSize()
    };

    /// A cipher without a key: both directions fail with NoKeySet.
    SimpleCipher();

    /// A cipher with automatic compression and a checksum. Every construction reseeds the process's
    /// pseudo-random generator from the clock.
    explicit SimpleCipher(quint64 key);

    CompressionMode compressionMode() const { return m_compressionMode; }
    void setCompressionMode(CompressionMode mode) { m_compressionMode = mode; }
    ProtectionMode protectionMode() const { return m_protectionMode; }
    void setProtectionMode(ProtectionMode mode) { m_protectionMode = mode; }

    /// The number of bytes that a compressed payload may unpack to. Initially 256 MiB.
    int maximumPlainSize() const { return m_maximumPlainSize; }
    void setMaximumPlainSize(int bytes) { m_maximumPlainSize = bytes; }

    /// The envelope of these bytes, or empty bytes without a key.
    QByteArray encryptToByteArray(QByteArray plain);

    /// The bytes in this envelope, or empty bytes on an error. lastError() distinguishes an error
    /// from an empty payload.
    QByteArray decryptToByteArray(const QByteArray& envelope);

    /// As decryptToByteArray(), decoded as UTF-8.
    QString decryptToString(const QByteArray& envelope);

    /// The error of the last operation.
    Error lastError() const { return m_lastError; }

private:
    QByteArray fail(Error error, const char* warning = nullptr);

    QVector<quint8> m_keyParts;
    CompressionMode m_compressionMode = CompressionMode::Auto;
    ProtectionMode m_protectionMode = ProtectionMode::Checksum;
    Error m_lastError = Error::NoError;
    int m_maximumPlainSize = 256 * 1024 * 1024;
};

} // namespace Common
