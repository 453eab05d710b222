#include "usbip/KernelHost.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace VirtualUnit {

namespace {

const std::string driver = "/sys/devices/platform/vhci_hcd.0/";

constexpr unsigned stateFree = 4; // VDEV_ST_NULL
constexpr unsigned deviceId = 2;  // what a remote machine would call the unit: any number does
constexpr unsigned speedFull = 2; // USB_SPEED_FULL

/// One line of the driver's table of ports.
struct PortLine
{
    std::string hub;
    unsigned port = 0;
    unsigned state = 0;
};

std::vector<PortLine> readPorts()
{
    std::ifstream file(driver + "status");
    if (!file)
        throw std::runtime_error("no " + driver + "status: is the module vhci-hcd loaded?");
    std::vector<PortLine> ports;
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        PortLine port;
        if (words >> port.hub >> port.port >> port.state)
            ports.push_back(port);
    }
    return ports;
}

std::runtime_error failure(const std::string& what, int error)
{
    return std::runtime_error(what + ": " + std::strerror(error));
}

} // namespace

KernelHost::KernelHost()
{
    for (const PortLine& line : readPorts()) {
        if (line.hub == "hs")
            m_ports.push_back(line.port);
    }
}

unsigned KernelHost::ports() const
{
    return static_cast<unsigned>(m_ports.size());
}

bool KernelHost::waitUntilFree(unsigned port) const
{
    // The driver takes a moment to let go of a unit that left.
    constexpr int attempts = 500;
    constexpr milliseconds pause(10);
    const unsigned number = m_ports.at(port - 1);
    for (int i = 0; i < attempts; ++i) {
        const std::vector<PortLine> lines = readPorts();
        const bool isFree = std::any_of(lines.begin(), lines.end(), [number](const auto& line) {
            return line.hub == "hs" && line.port == number && line.state == stateFree;
        });
        if (isFree)
            return true;
        std::this_thread::sleep_for(pause);
    }
    return false;
}

void KernelHost::attach(unsigned port, int socket) const
{
    const std::string path = driver + "attach";
    const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (file < 0)
        throw failure("cannot open " + path, errno);
    std::ostringstream line;
    line << m_ports.at(port - 1) << ' ' << socket << ' ' << deviceId << ' ' << speedFull;
    const std::string text = line.str();
    const ssize_t written = ::write(file, text.data(), text.size());
    const int error = errno;
    ::close(file);
    if (written < 0)
        throw failure("the kernel refuses a unit", error);
}

Address KernelHost::add(unsigned port, const P_Unit& unit,
                        const std::shared_ptr<Scheduler>& scheduler, const OnDeparture& onDeparture)
{
    if (!waitUntilFree(port))
        throw std::runtime_error("port " + std::to_string(port) + " is in use");
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        throw failure("cannot make a pair of sockets", errno);
    auto connection = std::make_unique<UsbipConnection>(ends[0], unit, scheduler, onDeparture);
    try {
        attach(port, ends[1]);
    } catch (const std::exception&) {
        ::close(ends[1]);
        throw;
    }
    ::close(ends[1]); // the driver has its own reference
    m_attached[port] = std::move(connection);
    return {};
}

void KernelHost::remove(unsigned port)
{
    m_attached.erase(port);
    if (!waitUntilFree(port))
        std::cerr << "virtual bus: the kernel does not let go of the unit at port " << port << '\n';
}

} // namespace VirtualUnit
