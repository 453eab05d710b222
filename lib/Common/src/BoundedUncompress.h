// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>

#include <optional>

namespace Common {

/// Unpacks the output of qCompress(): a 4-byte big-endian length, then a zlib stream. Holds at most
/// @p maximumSize bytes of output plus one; qUncompress() takes the stated length as a hint and
/// grows without limit. None if the stream is damaged, ends early, or its stated or real length
/// exceeds the maximum. Pure; any thread.
std::optional<QByteArray> boundedUncompress(const QByteArray& compressed, int maximumSize);

} // namespace Common
