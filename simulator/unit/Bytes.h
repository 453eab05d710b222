// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace VirtualUnit {

using Bytes = std::vector<std::uint8_t>;

/// The little-endian number in the @p size (at most 4) bytes from @p bytes, as USB and DfuSe send
/// it.
inline std::uint32_t readNumber(const std::uint8_t* bytes, std::size_t size)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
    return value;
}

/// Writes the lowest @p size bytes of @p value, little endian.
inline void writeNumber(std::uint8_t* bytes, std::size_t size, std::uint32_t value)
{
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

} // namespace VirtualUnit
