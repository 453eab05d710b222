#include "umockdev/Testbed.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace VirtualUnit {

namespace {

const std::string rootHubPath = "/devices/usb1";

std::string threeDigits(unsigned number)
{
    char text[16];
    std::snprintf(text, sizeof text, "%03u", number);
    return text;
}

std::string nodePath(std::uint8_t device)
{
    return "/dev/bus/usb/" + threeDigits(Testbed::BusNumber) + '/' + threeDigits(device);
}

std::string devicePath(unsigned port)
{
    return rootHubPath + "/1-" + std::to_string(port);
}

std::string hexadecimal(const Bytes& bytes)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0FU];
    }
    return text;
}

std::string fourDigits(unsigned number)
{
    char text[16];
    std::snprintf(text, sizeof text, "%04x", number);
    return text;
}

/// An attribute that ends with a newline, which the testbed's notation spells out.
std::string attribute(const std::string& name, const std::string& value)
{
    return "A: " + name + '=' + value + "\\n\n";
}

unsigned wordAt(const Bytes& bytes, std::size_t at)
{
    return static_cast<unsigned>(bytes[at] | bytes[at + 1] << 8);
}

/// The device in the testbed's own notation, as the kernel would show it. The node itself is made
/// elsewhere, so there is no line for it.
std::string describe(const std::string& path, std::uint8_t device, const Bytes& deviceDescriptor,
                     const Bytes& configuration, const std::string& attributes)
{
    Bytes descriptors = deviceDescriptor;
    descriptors.insert(descriptors.end(), configuration.begin(), configuration.end());
    const unsigned vendor = wordAt(deviceDescriptor, 8);
    const unsigned product = wordAt(deviceDescriptor, 10);
    const unsigned minor = device - 1U;
    std::ostringstream text;
    text << "P: " << path
         << "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: DEVNAME=" << nodePath(device)
         << "\nE: MAJOR=189\nE: MINOR=" << minor
         << "\nE: BUSNUM=" << threeDigits(Testbed::BusNumber)
         << "\nE: DEVNUM=" << threeDigits(device) << std::hex << "\nE: PRODUCT=" << vendor << '/'
         << product << '/' << wordAt(deviceDescriptor, 12) << std::dec
         << "\nE: TYPE=" << unsigned{deviceDescriptor[4]} << '/' << unsigned{deviceDescriptor[5]}
         << '/' << unsigned{deviceDescriptor[6]} << "\nA: dev=189:" << minor << '\n'
         << attribute("busnum", std::to_string(Testbed::BusNumber))
         << attribute("devnum", std::to_string(device)) << attribute("bConfigurationValue", "1")
         << attribute("idVendor", fourDigits(vendor)) << attribute("idProduct", fourDigits(product))
         << attributes << "H: descriptors=" << hexadecimal(descriptors) << "\n\n";
    return text.str();
}

std::string attributesOf(const Unit& unit)
{
    return attribute("speed", "12") +
           attribute("manufacturer", unit.stringText(Descriptors::ManufacturerString)) +
           attribute("product", unit.stringText(Descriptors::ProductString)) +
           attribute("serial", unit.stringText(Descriptors::SerialString));
}

} // namespace

Testbed::Testbed()
    : m_testbed(umockdev_testbed_new())
{
    gchar* root = umockdev_testbed_get_root_dir(m_testbed.get());
    m_root = root;
    g_free(root);
    // A bus is never without its root hub; hosts that list it rely on that.
    const Bytes device = {18, 1, 0, 2, 9, 0, 0, 64, 0x6B, 0x1D, 2, 0, 0x15, 5, 0, 0, 0, 1};
    const Bytes configuration = {9, 2, 25, 0, 1, 1, 0, 0xE0, 0, 9, 4, 0, 0,
                                 1, 9, 0,  0, 0, 7, 5, 0x81, 3, 4, 0, 12};
    addFromString(describe(rootHubPath, 1, device, configuration, attribute("speed", "480")));
}

Testbed::~Testbed()
{
    // A client waits for ever when the testbed is gone in which its ioctls are handled. One that
    // closes is noticed a moment later; where one stays, the testbed has to stay, without its
    // files.
    constexpr std::chrono::milliseconds moment(200);
    if (m_clients->waitForNone(moment))
        return;
    static_cast<void>(m_testbed.release());
    std::error_code ignored;
    std::filesystem::remove_all(m_root, ignored);
}

void Testbed::addFromString(const std::string& description)
{
    GError* error = nullptr;
    if (umockdev_testbed_add_from_string(m_testbed.get(), description.c_str(), &error) == FALSE) {
        const GErrorPtr owner(error);
        throw std::runtime_error(std::string("cannot add a device: ") + messageOf(error));
    }
}

unsigned Testbed::ports() const
{
    return 50; // a client can have that many nodes open
}

std::uint8_t Testbed::nextDeviceNumber()
{
    constexpr std::uint8_t last = 127;
    const auto taken = [this](std::uint8_t number) {
        return std::any_of(m_attached.begin(), m_attached.end(),
                           [number](const auto& entry) { return entry.second.device == number; });
    };
    do {
        m_lastDevice =
            m_lastDevice == last ? std::uint8_t{2} : static_cast<std::uint8_t>(m_lastDevice + 1);
    } while (taken(m_lastDevice));
    return m_lastDevice;
}

Address Testbed::add(unsigned port, const P_Unit& unit, const std::shared_ptr<Scheduler>& scheduler,
                     const OnDeparture& onDeparture)
{
    Attachment attachment;
    attachment.device = nextDeviceNumber();
    const std::string node = nodePath(attachment.device);
    attachment.node = std::make_shared<DeviceNode>(unit, scheduler, m_root + node, onDeparture);
    attachment.handler = serveIoctls(attachment.node, m_clients);
    // The node answers before anyone hears of it.
    GError* error = nullptr;
    if (umockdev_testbed_attach_ioctl(m_testbed.get(), node.c_str(), attachment.handler.get(),
                                      &error) == FALSE) {
        const GErrorPtr owner(error);
        throw std::runtime_error("cannot serve " + node + ": " + messageOf(error));
    }
    try {
        addFromString(describe(devicePath(port), attachment.device, unit->deviceDescriptor(),
                               unit->configurationDescriptor(), attributesOf(*unit)));
    } catch (const std::exception&) {
        umockdev_testbed_detach_ioctl(m_testbed.get(), node.c_str(), nullptr);
        throw;
    }
    const Address address{BusNumber, attachment.device};
    m_attached[port] = std::move(attachment);
    return address;
}

void Testbed::remove(unsigned port)
{
    const auto found = m_attached.find(port);
    if (found == m_attached.end())
        return;
    const Attachment attachment = std::move(found->second);
    m_attached.erase(found);
    const std::string node = nodePath(attachment.device);
    const std::string path = "/sys" + devicePath(port);
    // In this order: requests in flight end, nobody new can open the node, and the announcement is
    // made while there is still something to announce.
    attachment.node->shutDown();
    GError* error = nullptr;
    if (umockdev_testbed_detach_ioctl(m_testbed.get(), node.c_str(), &error) == FALSE) {
        const GErrorPtr owner(error);
        std::cerr << "virtual bus: cannot detach " << node << ": " << messageOf(error) << '\n';
    }
    umockdev_testbed_uevent(m_testbed.get(), path.c_str(), "remove");
    umockdev_testbed_remove_device(m_testbed.get(), path.c_str());
}

} // namespace VirtualUnit
