#pragma once

#include "bus/BusHost.h"
#include "usbip/UsbipMessage.h"

#include <set>
#include <thread>

namespace VirtualUnit {

/// A unit at the far end of a socket on which USB/IP is spoken, served by a thread of its own until
/// the socket is closed or the connection is destroyed: to the kernel that is a pulled cable.
///
/// USB/IP has no message for a reset of the port: the unit does not notice one.
class UsbipConnection
{
public:
    /// Takes over @p socket, a connected stream socket. For the rest see BusHost::add.
    UsbipConnection(int socket, P_Unit unit, std::shared_ptr<Scheduler> scheduler,
                    BusHost::OnDeparture onDeparture);
    UsbipConnection(const UsbipConnection&) = delete;
    UsbipConnection& operator=(const UsbipConnection&) = delete;
    /// Waits for the request in hand.
    ~UsbipConnection();

private:
    /// The sending side, which late answers may outlive the connection with.
    class Channel
    {
    public:
        explicit Channel(int socket)
            : m_socket(socket)
        {
        }
        Channel(const Channel&) = delete;
        Channel& operator=(const Channel&) = delete;
        ~Channel();

        /// False when the other side is gone.
        bool receive(std::uint8_t* bytes, std::size_t length) const;
        void begin(std::uint32_t sequence);
        /// Sends the reply unless the request was called off meanwhile.
        void finish(std::uint32_t sequence, const Bytes& reply);
        void callOff(std::uint32_t sequence, std::uint32_t unlinked);
        void shutDown() const;

    private:
        void send(const Bytes& message) const;

        const int m_socket;
        std::mutex m_mutex;
        std::set<std::uint32_t> m_pending;
    };

    void serve();
    void submit(const UsbipMessage::Request& request, const Bytes& payload);
    static Bytes replyTo(const UsbipMessage::Request& request, const Answer& answer);

    const P_Unit m_unit;
    const std::shared_ptr<Scheduler> m_scheduler;
    const BusHost::OnDeparture m_onDeparture;
    const std::shared_ptr<Channel> m_channel;
    std::thread m_thread;
};

} // namespace VirtualUnit
