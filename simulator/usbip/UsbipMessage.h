// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/SetupPacket.h"

#include <array>

namespace VirtualUnit {

/// The messages of USB/IP once a device is attached (Linux, Documentation/usb/usbip_protocol.rst):
/// a header of 48 bytes, all numbers big endian, and perhaps data. Pure functions.
namespace UsbipMessage {

enum Command : std::uint32_t
{
    Submit = 1,
    Unlink = 2,
    SubmitReply = 3,
    UnlinkReply = 4,
};

struct Header
{
    std::uint32_t command = 0;
    std::uint32_t sequence = 0;
    std::uint32_t device = 0;
    std::uint32_t direction = 0; ///< 1: the unit is asked to send data
    std::uint32_t endpoint = 0;
    std::uint32_t detail = 0; ///< Unlink: the request to be cancelled; replies: 0 or negative errno
    std::uint32_t length = 0; ///< of the data; in a reply the number of bytes that were moved
    std::array<std::uint32_t, 3> unused{};
    std::array<std::uint8_t, SetupPacket::Size> setup{}; ///< Submit
};

/// The header at @p wire, which holds as many bytes.
Header decode(const std::uint8_t* wire);

/// A reply: @p moved bytes went either way, @p data is what was read.
Bytes reply(Command command, std::uint32_t sequence, int status, std::size_t moved = 0,
            const Bytes& data = {});

} // namespace UsbipMessage
} // namespace VirtualUnit
