// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/FirmwareImage.h"

#include "unit/Flash.h"

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

std::uint32_t crc(const void* data, std::size_t size)
{
    return static_cast<std::uint32_t>(crc32_z(0, static_cast<const Bytef*>(data), size));
}

std::uint32_t checksum(Bytes image)
{
    writeNumber(&image[checksumAt], 4, 0);
    return crc(image.data(), image.size());
}

} // namespace

Bytes makeImage(std::size_t size, const std::string& version, std::uint32_t seed)
{
    if (size < MinimumImageSize || size > Flash::End - Flash::ApplicationStart)
        throw std::invalid_argument("an image has 64 to 247808 bytes");
    if (version.size() > MaximumVersionLength)
        throw std::invalid_argument("a version has at most 15 characters");

    Bytes image(size);
    // Another version or size changes every byte: a page left over from an older image must not
    // pass for one of the new image.
    std::seed_seq mixed{seed, static_cast<std::uint32_t>(size),
                        crc(version.data(), version.size())};
    std::mt19937 noise(mixed);
    std::generate(image.begin(), image.end(),
                  [&noise] { return static_cast<std::uint8_t>(noise() & 0xFFU); });
    // The initial stack pointer and the reset vector of the microcontroller.
    writeNumber(&image[0], 4, 0x20005000);
    writeNumber(&image[4], 4, 0x08003841);
    std::copy(marker.begin(), marker.end(), image.begin() + markerAt);
    writeNumber(&image[lengthAt], 4, static_cast<std::uint32_t>(size));
    std::fill_n(image.begin() + versionAt, versionField, std::uint8_t{0});
    std::copy(version.begin(), version.end(), image.begin() + versionAt);
    writeNumber(&image[checksumAt], 4, checksum(image));
    return image;
}

ImageInfo readImage(const Bytes& memory)
{
    if (memory.size() < MinimumImageSize ||
        !std::equal(marker.begin(), marker.end(), memory.begin() + markerAt))
        return {};
    const std::size_t length = readNumber(&memory[lengthAt], 4);
    if (length < MinimumImageSize || length > memory.size())
        return {};
    const Bytes image(memory.begin(), memory.begin() + static_cast<std::ptrdiff_t>(length));
    if (readNumber(&image[checksumAt], 4) != checksum(image))
        return {};
    const auto version = image.begin() + versionAt;
    return {length, {version, std::find(version, version + versionField, 0)}};
}

} // namespace VirtualUnit
