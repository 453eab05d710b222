#include "unit/FirmwareImage.h"

#include <algorithm>
#include <random>
#include <stdexcept>
#include <zlib.h>

namespace VirtualUnit {

namespace {

const std::string marker = "VUNITIMG";
constexpr std::size_t markerAt = 32;
constexpr std::size_t lengthAt = 40;
constexpr std::size_t versionAt = 44;
constexpr std::size_t versionField = MaximumVersionLength + 1;
constexpr std::size_t checksumAt = 60;

void putWord(Bytes& bytes, std::size_t at, std::uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

std::uint32_t getWord(const Bytes& bytes, std::size_t at)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value |= static_cast<std::uint32_t>(bytes[at + i]) << (8 * i);
    return value;
}

std::uint32_t checksumOf(const std::uint8_t* data, std::size_t size)
{
    return static_cast<std::uint32_t>(crc32_z(0, data, size));
}

std::uint32_t checksum(Bytes image)
{
    putWord(image, checksumAt, 0);
    return checksumOf(image.data(), image.size());
}

std::uint32_t checksumOf(const std::string& text)
{
    return checksumOf(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

} // namespace

Bytes makeImage(std::size_t size, const std::string& version, std::uint32_t seed)
{
    if (size < MinimumImageSize)
        throw std::invalid_argument("an image takes at least 64 bytes");
    if (version.size() > MaximumVersionLength)
        throw std::invalid_argument("a version takes at most 15 characters");

    Bytes image(size);
    // Of another version or size, another content throughout: a page left over from an older image
    // must not pass for one of the new.
    std::seed_seq mixed{seed, static_cast<std::uint32_t>(size), checksumOf(version)};
    std::mt19937 noise(mixed);
    std::generate(image.begin(), image.end(),
                  [&noise] { return static_cast<std::uint8_t>(noise() & 0xFFU); });
    // The initial stack pointer and the reset vector of the microcontroller.
    putWord(image, 0, 0x20005000);
    putWord(image, 4, 0x08003841);
    std::copy(marker.begin(), marker.end(), image.begin() + markerAt);
    putWord(image, lengthAt, static_cast<std::uint32_t>(size));
    std::fill_n(image.begin() + versionAt, versionField, std::uint8_t{0});
    std::copy(version.begin(), version.end(), image.begin() + versionAt);
    putWord(image, checksumAt, checksum(image));
    return image;
}

std::optional<ImageInfo> readImage(const Bytes& memory)
{
    if (memory.size() < MinimumImageSize ||
        !std::equal(marker.begin(), marker.end(), memory.begin() + markerAt))
        return std::nullopt;
    const std::size_t length = getWord(memory, lengthAt);
    if (length < MinimumImageSize || length > memory.size())
        return std::nullopt;
    const Bytes image(memory.begin(), memory.begin() + static_cast<std::ptrdiff_t>(length));
    if (getWord(image, checksumAt) != checksum(image))
        return std::nullopt;
    const auto version = image.begin() + versionAt;
    return ImageInfo{length, {version, std::find(version, version + versionField, 0)}};
}

} // namespace VirtualUnit
