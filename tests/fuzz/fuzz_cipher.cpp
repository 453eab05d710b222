// SPDX-License-Identifier: LicenseRef-Proprietary
// Cipher envelopes: the input as an envelope, as the payload of a sound one, and as plain bytes.
#include "Common/SimpleCipher.h"
#include "Harness.h"
#include "support/ReferenceEnvelope.h"

#include <QDataStream>

using Common::SimpleCipher;

namespace {

constexpr quint64 key = Common::defaultCipherKey;

// What is accepted is the envelope of what it gives.
QByteArray opened(SimpleCipher& cipher, const QByteArray& envelope)
{
    const QByteArray plain = cipher.decryptToByteArray(envelope);
    if (cipher.lastError() != SimpleCipher::Error::NoError) {
        assert(plain.isEmpty());
    } else if ((envelope[1] & Reference::compressedFlag) != 0) {
        assert(plain.size() <= cipher.maximumPlainSize());
    } else {
        const auto seed = static_cast<char>(quint8(envelope[2]) ^ key);
        assert(envelope == Reference::envelope(key, plain, quint8(envelope[1]), seed));
    }
    return plain;
}

} // namespace

void check(const QByteArray& input)
{
    quint16 limit = 0;
    quint8 flags = 0;
    QDataStream(input) >> limit >> flags;
    const QByteArray bytes = input.mid(3);
    const quint8 compressed = flags | Reference::compressedFlag;
    const quint8 stored = compressed ^ Reference::compressedFlag;

    SimpleCipher cipher(key);
    cipher.setMaximumPlainSize(limit);
    opened(cipher, input);
    assert(opened(cipher, Reference::envelope(key, bytes, stored)) == bytes);
    const QByteArray plain = opened(cipher, Reference::envelope(key, bytes, compressed));
    assert(plain.isEmpty() || plain == qUncompress(bytes));
    const QByteArray packed = Reference::envelope(key, qCompress(bytes, 1), compressed);
    assert(opened(cipher, packed) == (bytes.size() <= limit ? bytes : QByteArray()));

    cipher.setCompressionMode(SimpleCipher::CompressionMode(flags % 3));
    cipher.setProtectionMode(SimpleCipher::ProtectionMode(flags / 3 % 3));
    cipher.setMaximumPlainSize(bytes.size());
    assert(opened(cipher, cipher.encryptToByteArray(bytes)) == bytes);
}
