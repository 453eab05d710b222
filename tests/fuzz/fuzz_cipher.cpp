// Cipher envelopes: the input as an envelope, as the payload of a sound one, and as plain bytes.
#include "Common/BoundedUncompress.h"
#include "Common/SimpleCipher.h"
#include "Envelope.h"
#include "Harness.h"

using Common::SimpleCipher;
using Fuzz::require;

namespace {

constexpr int plainLimit = 100000;

QByteArray checkedDecrypt(const QByteArray& envelope)
{
    SimpleCipher cipher(Common::defaultCipherKey);
    cipher.setMaximumPlainSize(plainLimit);
    const QByteArray plain = cipher.decryptToByteArray(envelope);
    const bool packed = envelope.size() > 1 && (envelope[1] & 1) != 0;
    require(plain.size() <= (packed ? plainLimit : envelope.size()),
            "nothing unpacks to more than the limit, and nothing else grows");
    require(plain.isEmpty() || cipher.lastError() == SimpleCipher::Error::NoError,
            "an error gives no bytes");
    require(plain == cipher.decryptToByteArray(envelope), "deciphering depends on nothing else");
    return plain;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input = Fuzz::bytesOf(data, size);
    checkedDecrypt(input);
    if (input.isEmpty())
        return 0;
    const auto flags = std::uint8_t(input[0]);
    const QByteArray payload = input.mid(1);
    const QByteArray opened = checkedDecrypt(Fuzz::sealed(flags, payload));
    require((flags & 1) != 0 || opened == payload, "a sound envelope gives its payload");

    SimpleCipher cipher(Common::defaultCipherKey);
    cipher.setCompressionMode(SimpleCipher::CompressionMode(flags % 3));
    cipher.setProtectionMode(SimpleCipher::ProtectionMode(flags / 3 % 3));
    const QByteArray envelope = cipher.encryptToByteArray(payload);
    require(cipher.decryptToByteArray(envelope) == payload &&
                cipher.lastError() == SimpleCipher::Error::NoError,
            "what was enciphered is deciphered");

    const int limit = flags * 16;
    const std::optional<QByteArray> plain = Common::boundedUncompress(payload, limit);
    require(!plain || plain->size() <= limit, "unpacking stops at the limit");
    require(!plain || *plain == qUncompress(payload), "unpacking agrees with Qt's own");
    QByteArray packed = qCompress(payload, 1);
    require(Common::boundedUncompress(packed, payload.size()) == payload,
            "a limit that is met lets all through");
    packed.replace(0, 4, QByteArray(4, '\0'));
    require(payload.isEmpty() || !Common::boundedUncompress(packed, payload.size() - 1),
            "one byte over the limit is too much, whatever length is stated");
    return 0;
}
