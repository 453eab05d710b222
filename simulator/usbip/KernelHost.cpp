// SPDX-License-Identifier: LicenseRef-Proprietary
#include "usbip/KernelHost.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <iostream>
#include <sstream>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace VirtualUnit {

namespace {

const std::string driver = "/sys/devices/platform/vhci_hcd.0/";

constexpr unsigned stateFree = 4; // VDEV_ST_NULL
constexpr unsigned deviceId = 2;  // the unit's number on a remote machine: any number works
constexpr unsigned speedFull = 2; // USB_SPEED_FULL

/// The ports for units of full speed: the driver's number and state of each.
std::map<unsigned, unsigned> readPorts()
{
    std::ifstream file(driver + "status");
    if (!file)
        throw std::runtime_error("no " + driver + "status: is the module vhci-hcd loaded?");
    std::map<unsigned, unsigned> ports;
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string hub;
        unsigned port = 0;
        unsigned state = 0;
        if (words >> hub >> port >> state && hub == "hs")
            ports[port] = state;
    }
    return ports;
}

} // namespace

KernelHost::KernelHost()
{
    for (const auto& [number, state] : readPorts())
        m_ports.push_back(number);
}

bool KernelHost::waitUntilFree(unsigned port) const
{
    // The driver needs a moment to release a unit that left.
    constexpr int attempts = 500;
    for (int i = 0; i < attempts; ++i) {
        if (readPorts()[m_ports.at(port - 1)] == stateFree)
            return true;
        std::this_thread::sleep_for(milliseconds(10));
    }
    return false;
}

void KernelHost::attach(unsigned port, int socket) const
{
    std::ofstream file(driver + "attach");
    file << m_ports.at(port - 1) << ' ' << socket << ' ' << deviceId << ' ' << speedFull;
    if (!file.flush())
        throw std::system_error(errno, std::generic_category(), "the kernel refuses a unit");
}

void KernelHost::add(unsigned port, const P_Unit& unit, const OnDeparture& onDeparture)
{
    if (!waitUntilFree(port))
        throw std::runtime_error("port " + std::to_string(port) + " is in use");
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot create a socket pair");
    auto connection = std::make_unique<UsbipConnection>(ends[0], unit, onDeparture);
    try {
        attach(port, ends[1]);
    } catch (const std::exception&) {
        ::close(ends[1]);
        throw;
    }
    ::close(ends[1]); // the driver has its own reference
    m_attached[port] = std::move(connection);
}

void KernelHost::remove(unsigned port)
{
    m_attached.erase(port);
    if (!waitUntilFree(port))
        std::cerr << "virtual bus: the kernel does not release the unit at port " << port << '\n';
}

} // namespace VirtualUnit
