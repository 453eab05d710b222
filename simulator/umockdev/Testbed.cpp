// SPDX-License-Identifier: LicenseRef-Proprietary
#include "umockdev/Testbed.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace VirtualUnit {

namespace {

const std::string rootHubPath = "/devices/usb1";

std::string formatted(const char* format, unsigned number)
{
    char text[16];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

std::string nodePath(std::uint8_t device)
{
    return "/dev/bus/usb/" + formatted("%03u/", Testbed::BusNumber) + formatted("%03u", device);
}

std::string devicePath(unsigned port)
{
    return rootHubPath + "/1-" + std::to_string(port);
}

/// An attribute that ends with a newline, which the testbed's notation spells out.
std::string attribute(const std::string& name, const std::string& value)
{
    return "A: " + name + '=' + value + "\\n\n";
}

/// The device in the testbed's notation, as the kernel would show it. The node itself is made
/// elsewhere, so there is no line for it.
std::string describe(const std::string& path, std::uint8_t device, const Bytes& descriptors,
                     const std::string& attributes)
{
    const auto word = [&descriptors](std::size_t at) {
        return readNumber(&descriptors[at], 2);
    };
    const std::string minor = std::to_string(device - 1U);
    std::ostringstream text;
    text << "P: " << path
         << "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: DEVNAME=" << nodePath(device)
         << "\nE: MAJOR=189\nE: MINOR=" << minor
         << "\nE: BUSNUM=" << formatted("%03u", Testbed::BusNumber)
         << "\nE: DEVNUM=" << formatted("%03u", device)
         << "\nE: PRODUCT=" << formatted("%x/", word(8)) << formatted("%x/", word(10))
         << formatted("%x", word(12)) << "\nE: TYPE=" << formatted("%u/", descriptors[4])
         << formatted("%u/", descriptors[5]) << formatted("%u", descriptors[6])
         << "\nA: dev=189:" << minor << '\n'
         << attribute("busnum", std::to_string(Testbed::BusNumber))
         << attribute("devnum", std::to_string(device)) << attribute("bConfigurationValue", "1")
         << attribute("idVendor", formatted("%04x", word(8)))
         << attribute("idProduct", formatted("%04x", word(10))) << attributes << "H: descriptors=";
    for (const std::uint8_t byte : descriptors)
        text << formatted("%02X", byte);
    text << "\n\n";
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
    // A bus always has a root hub; hosts that list it rely on that.
    const Bytes descriptors = {18, 1, 0, 2, 9, 0,  0, 64, 0x6B, 0x1D, 2,    0, 0x15, 5, 0,
                               0,  0, 1, 9, 2, 25, 0, 1,  1,    0,    0xE0, 0, 9,    4, 0,
                               0,  1, 9, 0, 0, 0,  7, 5,  0x81, 3,    4,    0, 12};
    addFromString(describe(rootHubPath, 1, descriptors, attribute("speed", "480")));
}

Testbed::~Testbed()
{
    m_scheduler->stop();
    // Without the testbed that handles its ioctls, a client blocks indefinitely. A client that
    // closes its node is noticed after a delay. If one keeps its node open, the testbed stays,
    // without its files.
    for (int i = 0; i < 20 && *m_clients > 0; ++i)
        std::this_thread::sleep_for(milliseconds(10));
    if (*m_clients == 0)
        return;
    static_cast<void>(m_testbed.release());
    std::error_code ignored;
    std::filesystem::remove_all(m_root, ignored);
}

void Testbed::addFromString(const std::string& description)
{
    GError* error = nullptr;
    const gboolean ok =
        umockdev_testbed_add_from_string(m_testbed.get(), description.c_str(), &error);
    throwUnless(ok, "cannot add a device", error);
}

std::uint8_t Testbed::nextDeviceNumber()
{
    constexpr std::uint8_t last = 127;
    const auto taken = [this](std::uint8_t number) {
        return std::any_of(m_attached.begin(), m_attached.end(),
                           [number](const auto& entry) { return entry.second.device == number; });
    };
    do
        m_lastDevice = m_lastDevice == last ? 2 : m_lastDevice + 1;
    while (taken(m_lastDevice));
    return m_lastDevice;
}

void Testbed::add(unsigned port, const P_Unit& unit, const OnDeparture& onDeparture)
{
    Attachment attachment;
    attachment.device = nextDeviceNumber();
    const std::string node = nodePath(attachment.device);
    attachment.node = std::make_shared<DeviceNode>(unit, m_scheduler, m_root + node, onDeparture);
    attachment.handler = serveIoctls(attachment.node, m_clients);
    // The node works before the uevent announces it.
    GError* error = nullptr;
    const gboolean ok = umockdev_testbed_attach_ioctl(m_testbed.get(), node.c_str(),
                                                      attachment.handler.get(), &error);
    throwUnless(ok, "cannot serve " + node, error);
    try {
        addFromString(describe(devicePath(port), attachment.device, unit->descriptors(),
                               attributesOf(*unit)));
    } catch (const std::exception&) {
        umockdev_testbed_detach_ioctl(m_testbed.get(), node.c_str(), nullptr);
        throw;
    }
    m_attached[port] = std::move(attachment);
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
    // In this order: pending requests end, nobody can open the node any more, and the uevent is
    // sent while sysfs still has the device. A node that cannot be detached is gone already.
    attachment.node->shutDown();
    umockdev_testbed_detach_ioctl(m_testbed.get(), node.c_str(), nullptr);
    umockdev_testbed_uevent(m_testbed.get(), path.c_str(), "remove");
    umockdev_testbed_remove_device(m_testbed.get(), path.c_str());
}

} // namespace VirtualUnit
