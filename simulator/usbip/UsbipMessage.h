#pragma once

#include "unit/SetupPacket.h"

namespace VirtualUnit {

/// The messages of USB/IP once a device is attached (Linux, Documentation/usb/usbip_protocol.rst):
/// headers of 48 bytes, all numbers big endian. Pure functions.
namespace UsbipMessage {

constexpr std::size_t HeaderSize = 48;
using Header = std::array<std::uint8_t, HeaderSize>;

enum class Command : std::uint32_t
{
    Submit = 1,
    Unlink = 2,
    SubmitReply = 3,
    UnlinkReply = 4,
};

/// What the kernel asks for. The fields after `endpoint` belong to one command each.
struct Request
{
    Command command = Command::Submit;
    std::uint32_t sequence = 0;
    bool isIn = false;
    std::uint32_t endpoint = 0;
    std::uint32_t length = 0; ///< Submit: of the transfer; for OUT as many bytes follow the header
    SetupPacket setup;        ///< Submit
    std::uint32_t unlinked = 0; ///< Unlink: the sequence number of the request to be called off
};

Request decode(const Header& header);

/// The end of a transfer: @p status is 0 or a negative errno. For IN the data are @p data and
/// @p moved is their length; for OUT @p data is empty and @p moved tells what was taken.
Bytes submitReply(std::uint32_t sequence, int status, std::size_t moved, const Bytes& data);

/// The answer to Unlink: -ECONNRESET when the request was still pending, 0 when it had ended.
Bytes unlinkReply(std::uint32_t sequence, int status);

} // namespace UsbipMessage
} // namespace VirtualUnit
