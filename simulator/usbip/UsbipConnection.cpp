// SPDX-License-Identifier: LicenseRef-Proprietary
#include "usbip/UsbipConnection.h"

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <sys/socket.h>
#include <unistd.h>

namespace VirtualUnit {

using UsbipMessage::Header;
using UsbipMessage::reply;

UsbipConnection::UsbipConnection(int socket, P_Unit unit, BusHost::OnDeparture onDeparture)
    : m_socket(socket)
    , m_unit(std::move(unit))
    , m_onDeparture(std::move(onDeparture))
    , m_thread([this] { serve(); })
{
}

UsbipConnection::~UsbipConnection()
{
    ::shutdown(m_socket, SHUT_RDWR);
    m_thread.join();
    ::close(m_socket);
}

void UsbipConnection::serve()
{
    // A control transfer carries at most 65535 bytes: the kernel sends no larger length.
    constexpr std::uint32_t maximumLength = 0xFFFF;
    std::array<std::uint8_t, sizeof(Header)> wire{};
    while (receive(wire.data(), wire.size())) {
        const Header request = UsbipMessage::decode(wire.data());
        if (request.command == UsbipMessage::Unlink) {
            const bool wasPending = m_silent.erase(request.detail) != 0;
            send(reply(UsbipMessage::UnlinkReply, request.sequence, wasPending ? -ECONNRESET : 0));
            continue;
        }
        if (request.command != UsbipMessage::Submit || request.length > maximumLength) {
            std::cerr << "virtual bus: the kernel sent an invalid message\n";
            ::shutdown(m_socket, SHUT_RDWR);
            return;
        }
        Bytes payload(request.direction == 1 ? 0 : request.length);
        if (!receive(payload.data(), payload.size()))
            return;
        submit(request, payload);
    }
}

/// False when the other side is gone.
bool UsbipConnection::receive(std::uint8_t* bytes, std::size_t length) const
{
    while (length > 0) {
        const ssize_t count = TEMP_FAILURE_RETRY(::recv(m_socket, bytes, length, 0));
        if (count <= 0)
            return false;
        bytes += count;
        length -= static_cast<std::size_t>(count);
    }
    return true;
}

void UsbipConnection::send(const Bytes& message) const
{
    // A message is sent as a whole, or the other side is gone; receive() notices that as well.
    static_cast<void>(::send(m_socket, message.data(), message.size(), MSG_NOSIGNAL));
}

void UsbipConnection::submit(const Header& request, const Bytes& payload)
{
    const auto respond = [&](int status, std::size_t moved, const Bytes& data) {
        send(reply(UsbipMessage::SubmitReply, request.sequence, status, moved, data));
    };
    if (request.endpoint != 0) {
        respond(-ENOENT, 0, {}); // the units have no endpoint but the default one
        return;
    }
    Response response = m_unit->control(SetupPacket::fromWire(request.setup.data()), payload);
    if (response.departure)
        m_onDeparture(response.delay, *response.departure);
    std::this_thread::sleep_for(response.delay);
    response.data.resize(std::min<std::size_t>(response.data.size(), request.length));
    switch (response.kind) {
    case Response::Kind::Silence:
        m_silent.insert(request.sequence); // until the kernel unlinks it or the unit leaves
        break;
    case Response::Kind::Stall:
        respond(-EPIPE, 0, {});
        break;
    case Response::Kind::Acknowledge:
        respond(0, request.length, {});
        break;
    case Response::Kind::Data:
        respond(0, response.data.size(), response.data);
        break;
    }
}

} // namespace VirtualUnit
