#include "usbip/UsbipMessage.h"

#include <algorithm>

namespace VirtualUnit::UsbipMessage {

namespace {

// Offsets in the header; those after Endpoint depend on the command.
constexpr std::size_t commandAt = 0;
constexpr std::size_t sequenceAt = 4;
constexpr std::size_t directionAt = 12;
constexpr std::size_t endpointAt = 16;
constexpr std::size_t firstFieldAt = 20;
constexpr std::size_t lengthAt = 24;
constexpr std::size_t setupAt = 40;

std::uint32_t numberAt(const Header& header, std::size_t at)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i)
        value = value << 8 | header[at + i];
    return value;
}

void putNumber(Bytes& message, std::size_t at, std::uint32_t value)
{
    for (std::size_t i = 0; i < sizeof value; ++i)
        message[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
}

Bytes reply(Command command, std::uint32_t sequence, int status)
{
    Bytes message(HeaderSize, 0);
    putNumber(message, commandAt, static_cast<std::uint32_t>(command));
    putNumber(message, sequenceAt, sequence);
    putNumber(message, firstFieldAt, static_cast<std::uint32_t>(status));
    return message;
}

} // namespace

Request decode(const Header& header)
{
    Request request;
    request.command = static_cast<Command>(numberAt(header, commandAt));
    request.sequence = numberAt(header, sequenceAt);
    request.isIn = numberAt(header, directionAt) == 1;
    request.endpoint = numberAt(header, endpointAt);
    request.length = numberAt(header, lengthAt);
    std::array<std::uint8_t, SetupPacket::Size> setup{};
    std::copy_n(header.begin() + setupAt, setup.size(), setup.begin());
    request.setup = SetupPacket::fromWire(setup);
    request.unlinked = numberAt(header, firstFieldAt);
    return request;
}

Bytes submitReply(std::uint32_t sequence, int status, std::size_t moved, const Bytes& data)
{
    Bytes message = reply(Command::SubmitReply, sequence, status);
    putNumber(message, lengthAt, static_cast<std::uint32_t>(moved));
    message.insert(message.end(), data.begin(), data.end());
    return message;
}

Bytes unlinkReply(std::uint32_t sequence, int status)
{
    return reply(Command::UnlinkReply, sequence, status);
}

} // namespace VirtualUnit::UsbipMessage
