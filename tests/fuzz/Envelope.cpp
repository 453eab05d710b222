#include "Envelope.h"

#include "Common/SimpleCipher.h"

#include <QCryptographicHash>

namespace Fuzz {

namespace {

constexpr std::uint8_t checksumFlag = 0x02;
constexpr std::uint8_t hashFlag = 0x04;

} // namespace

QByteArray sealed(std::uint8_t flags, const QByteArray& storedPayload)
{
    QByteArray body(1, 'r');
    if ((flags & checksumFlag) != 0) {
        const quint16 sum = qChecksum(storedPayload.constData(), uint(storedPayload.size()));
        body += char(sum >> 8);
        body += char(sum & 0xFF);
    } else if ((flags & hashFlag) != 0) {
        body += QCryptographicHash::hash(storedPayload, QCryptographicHash::Sha1);
    }
    body += storedPayload;
    char last = 0;
    for (int i = 0; i < body.size(); ++i) {
        last = char(last ^ body[i] ^ char(Common::defaultCipherKey >> (8 * (i % 8))));
        body[i] = last;
    }
    return QByteArray(1, '\3') + char(flags) + body;
}

} // namespace Fuzz
