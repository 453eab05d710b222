#pragma once

#include <QByteArray>

namespace Fuzz {

/// A cipher envelope with these flags around a stored payload, with the integrity bytes that the
/// flags ask for. Written apart from the product's cipher: it reaches what lies behind the
/// checksum, which random bytes hardly ever pass.
QByteArray sealed(std::uint8_t flags, const QByteArray& storedPayload);

} // namespace Fuzz
