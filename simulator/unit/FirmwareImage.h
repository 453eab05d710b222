// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Bytes.h"

#include <string>

namespace VirtualUnit {

/// The virtual units' own image format. An application image carries a descriptor at byte 32:
///
///     32  8 bytes  the marker "VUNITIMG"
///     40  u32      length of the whole image in bytes, little endian
///     44  16 bytes the version as ASCII text, padded with NUL
///     60  u32      CRC-32 of the whole image with these four bytes as zero, little endian
///
/// An image is valid only as a whole, so that an interrupted flash leaves none.
struct ImageInfo
{
    std::size_t length = 0;
    std::string version;
};

constexpr std::size_t MinimumImageSize = 64;
constexpr std::size_t MaximumVersionLength = 15;

/// Makes a valid image of exactly @p size bytes with that version. Images that differ in size,
/// version or @p seed differ throughout. Throws std::invalid_argument when the size is not from
/// MinimumImageSize to that of the application's flash, or the version is longer than
/// MaximumVersionLength.
Bytes makeImage(std::size_t size, const std::string& version, std::uint32_t seed = 1);

/// The image at the start of @p memory, which may hold more; length 0 unless the image is valid.
ImageInfo readImage(const Bytes& memory);

} // namespace VirtualUnit
