// SPDX-License-Identifier: LicenseRef-Proprietary
#include "usbip/UsbipMessage.h"

#include <arpa/inet.h>
#include <cstring>

namespace VirtualUnit::UsbipMessage {

static_assert(sizeof(Header) == 48);

Header decode(const std::uint8_t* wire)
{
    Header header;
    std::memcpy(&header, wire, sizeof header);
    for (std::uint32_t* number : {&header.command, &header.sequence, &header.direction,
                                  &header.endpoint, &header.detail, &header.length})
        *number = ntohl(*number);
    return header;
}

Bytes reply(Command command, std::uint32_t sequence, int status, std::size_t moved,
            const Bytes& data)
{
    Header header;
    header.command = htonl(command);
    header.sequence = htonl(sequence);
    header.detail = htonl(static_cast<std::uint32_t>(status));
    header.length = htonl(static_cast<std::uint32_t>(moved));
    Bytes message(sizeof header);
    std::memcpy(message.data(), &header, sizeof header);
    message.insert(message.end(), data.begin(), data.end());
    return message;
}

} // namespace VirtualUnit::UsbipMessage
