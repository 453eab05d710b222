#pragma once

#include <QByteArray>

#include <optional>

namespace Common {

/// Unpacks what qCompress() made: a 4-byte big-endian length, then a zlib stream. Unlike
/// qUncompress(), which takes the stated length as a hint and grows without end, it never holds
/// more than maximumSize bytes of output. Empty when the stream is damaged, ends early, or its
/// stated or real length is above the maximum. Pure; any thread.
std::optional<QByteArray> boundedUncompress(const QByteArray& compressed, int maximumSize);

} // namespace Common
