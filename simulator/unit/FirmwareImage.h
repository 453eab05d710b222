#pragma once

#include "unit/SetupPacket.h"

#include <optional>
#include <string>

namespace VirtualUnit {

/// The virtual units' image convention. An application image carries a descriptor at byte 32:
///
///     32  8 bytes  the marker "VUNITIMG"
///     40  u32      length of the whole image in bytes, little endian
///     44  16 bytes the version as ASCII text, padded with NUL
///     60  u32      CRC-32 of the whole image with these four bytes taken as zero, little endian
///
/// An image is valid only if all of it is there, so that an interrupted flash leaves none.
struct ImageInfo
{
    std::size_t length = 0;
    std::string version;
};

constexpr std::size_t MinimumImageSize = 64;
constexpr std::size_t MaximumVersionLength = 15;

/// Makes a valid image of exactly @p size bytes that says @p version. Images that
/// differ in size, version or @p seed differ throughout. Throws std::invalid_argument when the size
/// is below MinimumImageSize or the version is longer than MaximumVersionLength.
Bytes makeImage(std::size_t size, const std::string& version, std::uint32_t seed = 1);

/// The facts of the image that @p memory begins with (more may follow it); none unless it is valid.
std::optional<ImageInfo> readImage(const Bytes& memory);

} // namespace VirtualUnit
