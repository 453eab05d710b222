#include "usbip/UsbipConnection.h"

#include <cerrno>
#include <iostream>
#include <sys/socket.h>
#include <unistd.h>

namespace VirtualUnit {

using UsbipMessage::Command;
using UsbipMessage::Request;
using Lock = std::lock_guard<std::mutex>;

namespace {

/// A control transfer carries at most 65535 bytes: more is not a message of the kernel's.
constexpr std::uint32_t maximumLength = 0xFFFF;

} // namespace

UsbipConnection::Channel::~Channel()
{
    ::close(m_socket);
}

bool UsbipConnection::Channel::receive(std::uint8_t* bytes, std::size_t length) const
{
    while (length > 0) {
        const ssize_t count = ::recv(m_socket, bytes, length, 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes += count;
        length -= static_cast<std::size_t>(count);
    }
    return true;
}

void UsbipConnection::Channel::send(const Bytes& message) const
{
    std::size_t sent = 0;
    while (sent < message.size()) {
        const ssize_t count =
            ::send(m_socket, message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return; // the other side is gone; the reading thread notices it as well
        sent += static_cast<std::size_t>(count);
    }
}

void UsbipConnection::Channel::begin(std::uint32_t sequence)
{
    const Lock lock(m_mutex);
    m_pending.insert(sequence);
}

void UsbipConnection::Channel::finish(std::uint32_t sequence, const Bytes& reply)
{
    const Lock lock(m_mutex);
    if (m_pending.erase(sequence) != 0)
        send(reply);
}

void UsbipConnection::Channel::callOff(std::uint32_t sequence, std::uint32_t unlinked)
{
    const Lock lock(m_mutex);
    const bool wasPending = m_pending.erase(unlinked) != 0;
    send(UsbipMessage::unlinkReply(sequence, wasPending ? -ECONNRESET : 0));
}

void UsbipConnection::Channel::shutDown() const
{
    ::shutdown(m_socket, SHUT_RDWR);
}

UsbipConnection::UsbipConnection(int socket, P_Unit unit, std::shared_ptr<Scheduler> scheduler,
                                 BusHost::OnDeparture onDeparture)
    : m_unit(std::move(unit))
    , m_scheduler(std::move(scheduler))
    , m_onDeparture(std::move(onDeparture))
    , m_channel(std::make_shared<Channel>(socket))
    , m_thread([this] { serve(); })
{
}

UsbipConnection::~UsbipConnection()
{
    m_channel->shutDown();
    m_thread.join();
}

void UsbipConnection::serve()
{
    UsbipMessage::Header header{};
    while (m_channel->receive(header.data(), header.size())) {
        const Request request = UsbipMessage::decode(header);
        if (request.command == Command::Unlink) {
            m_channel->callOff(request.sequence, request.unlinked);
            continue;
        }
        if (request.command != Command::Submit || request.length > maximumLength) {
            std::cerr << "virtual bus: the kernel sent a message that is none\n";
            m_channel->shutDown();
            return;
        }
        Bytes payload(request.isIn ? 0 : request.length);
        if (!m_channel->receive(payload.data(), payload.size()))
            return;
        submit(request, payload);
    }
}

void UsbipConnection::submit(const Request& request, const Bytes& payload)
{
    m_channel->begin(request.sequence);
    if (request.endpoint != 0) {
        // The units have no endpoint but the default one.
        m_channel->finish(request.sequence,
                          UsbipMessage::submitReply(request.sequence, -ENOENT, 0, {}));
        return;
    }
    const Answer answer = m_unit->control(request.setup, payload);
    if (answer.departure && m_onDeparture)
        m_onDeparture(answer.delay, *answer.departure);
    if (answer.kind == Answer::Kind::Silence)
        return; // pending until the kernel calls it off or the unit leaves
    const Bytes reply = replyTo(request, answer);
    if (answer.delay.count() == 0) {
        m_channel->finish(request.sequence, reply);
        return;
    }
    const std::weak_ptr<Channel> weakChannel = m_channel;
    m_scheduler->after(answer.delay, [weakChannel, sequence = request.sequence, reply] {
        if (const auto channel = weakChannel.lock())
            channel->finish(sequence, reply);
    });
}

Bytes UsbipConnection::replyTo(const Request& request, const Answer& answer)
{
    switch (answer.kind) {
    case Answer::Kind::Data: {
        Bytes data = answer.data;
        data.resize(std::min<std::size_t>(data.size(), request.length));
        return UsbipMessage::submitReply(request.sequence, 0, data.size(), data);
    }
    case Answer::Kind::Acknowledge:
        return UsbipMessage::submitReply(request.sequence, 0, request.length, {});
    case Answer::Kind::Stall:
    case Answer::Kind::Silence:
        break;
    }
    return UsbipMessage::submitReply(request.sequence, -EPIPE, 0, {});
}

} // namespace VirtualUnit
