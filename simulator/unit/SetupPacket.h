// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Bytes.h"

namespace VirtualUnit {

/// The eight bytes that open every control transfer (USB 2.0, table 9-2), decoded. A plain value.
struct SetupPacket
{
    static constexpr std::size_t Size = 8;
    static constexpr std::uint8_t Standard = 0x00; ///< values of type()
    static constexpr std::uint8_t Class = 0x20;
    static constexpr std::uint8_t Vendor = 0x40;

    std::uint8_t bmRequestType = 0;
    std::uint8_t bRequest = 0;
    std::uint16_t wValue = 0;
    std::uint16_t wIndex = 0;
    std::uint16_t wLength = 0;

    /// Decodes the Size bytes at @p wire.
    static SetupPacket fromWire(const std::uint8_t* wire)
    {
        const auto word = [wire](int at) {
            return static_cast<std::uint16_t>(readNumber(wire + at, 2));
        };
        return {wire[0], wire[1], word(2), word(4), word(6)};
    }

    /// Whether the unit is asked to send data.
    bool isIn() const { return (bmRequestType & 0x80U) != 0; }
    std::uint8_t type() const { return bmRequestType & 0x60U; }
};

} // namespace VirtualUnit
