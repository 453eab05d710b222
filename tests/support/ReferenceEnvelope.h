// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QCryptographicHash>

/// A second implementation of the cipher's envelope, written from its layout alone, bit by bit.
/// Nothing here calls the product's cipher or qChecksum(). Pure functions; any thread.
namespace Reference {

constexpr quint8 compressedFlag = 0x01;
constexpr quint8 checksumFlag = 0x02;
constexpr quint8 hashFlag = 0x04;

/// CRC-16 of ISO 3309. Its published check value, of "123456789", is 0x906E.
inline quint16 crc(const QByteArray& bytes)
{
    unsigned remainder = 0xFFFF;
    for (const char byte : bytes) {
        remainder ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? 0x8408 : 0);
    }
    return static_cast<quint16>(remainder ^ 0xFFFF);
}

inline QByteArray bigEndian(quint16 value)
{
    return QByteArray(1, static_cast<char>(value >> 8)) + static_cast<char>(value & 0xFF);
}

/// An envelope around exactly this body: integrity bytes, if any, and payload. Damaged envelopes
/// are built here: no parameter has to fit another.
inline QByteArray envelopeOfBody(quint64 key, const QByteArray& body, quint8 flags, char seed = 'R',
                                 char version = 3)
{
    QByteArray result = QByteArray(1, version) + static_cast<char>(flags);
    unsigned last = 0;
    int position = 0;
    for (const char byte : seed + body) {
        const int shift = 8 * (position++ % 8);
        last ^= static_cast<quint8>(byte) ^ static_cast<quint8>(key >> shift);
        result.append(static_cast<char>(last));
    }
    return result;
}

/// An envelope around a payload as it is stored, with the integrity bytes that @p flags ask for;
/// the checksum wins over the hash. The caller compresses the payload if @p flags require it.
inline QByteArray envelope(quint64 key, const QByteArray& payload, quint8 flags = checksumFlag,
                           char seed = 'R', char version = 3)
{
    QByteArray integrity;
    if ((flags & checksumFlag) != 0)
        integrity = bigEndian(crc(payload));
    else if ((flags & hashFlag) != 0)
        integrity = QCryptographicHash::hash(payload, QCryptographicHash::Sha1);
    return envelopeOfBody(key, integrity + payload, flags, seed, version);
}

} // namespace Reference
