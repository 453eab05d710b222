// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/BusHost.h"
#include "usbip/UsbipMessage.h"

#include <set>
#include <thread>

namespace VirtualUnit {

/// A unit at the far end of a socket that carries USB/IP, served by its own thread until the socket
/// is closed or the connection is destroyed, which the kernel treats as a removal.
///
/// A late response delays the requests behind it. USB/IP has no message for a reset of the port:
/// the unit does not notice one.
class UsbipConnection
{
public:
    /// Takes over @p socket, a connected stream socket. For the rest see BusHost::add.
    UsbipConnection(int socket, P_Unit unit, BusHost::OnDeparture onDeparture);
    UsbipConnection(const UsbipConnection&) = delete;
    UsbipConnection& operator=(const UsbipConnection&) = delete;
    /// Waits for the current request.
    ~UsbipConnection();

private:
    void serve();
    bool receive(std::uint8_t* bytes, std::size_t length) const;
    void send(const Bytes& message) const;
    void submit(const UsbipMessage::Header& request, const Bytes& payload);

    const int m_socket;
    const P_Unit m_unit;
    const BusHost::OnDeparture m_onDeparture;
    std::set<std::uint32_t> m_silent; ///< sequence numbers of requests that get no response
    std::thread m_thread;
};

} // namespace VirtualUnit
