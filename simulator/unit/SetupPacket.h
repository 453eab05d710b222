#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace VirtualUnit {

using Bytes = std::vector<std::uint8_t>;

/// The eight bytes that open every control transfer (USB 2.0, table 9-2), decoded. A plain value.
struct SetupPacket
{
    static constexpr std::size_t Size = 8;

    std::uint8_t bmRequestType = 0;
    std::uint8_t bRequest = 0;
    std::uint16_t wValue = 0;
    std::uint16_t wIndex = 0;
    std::uint16_t wLength = 0;

    /// Decodes the packet from its bytes on the wire (little endian).
    static SetupPacket fromWire(const std::array<std::uint8_t, Size>& wire);
    std::array<std::uint8_t, Size> toWire() const;

    /// Whether the unit is asked to send data.
    bool isIn() const { return (bmRequestType & 0x80U) != 0; }
    bool isStandard() const { return (bmRequestType & 0x60U) == 0x00; }
    bool isClass() const { return (bmRequestType & 0x60U) == 0x20; }
    bool isVendor() const { return (bmRequestType & 0x60U) == 0x40; }
};

} // namespace VirtualUnit
