#include "HostConfiguration.h"

#include <algorithm>
#include <memory>

namespace Fuzz {

namespace {

constexpr std::size_t configurationSize = 9;
constexpr std::uint8_t interfaceType = 4;
constexpr std::size_t interfaceSize = 9;
constexpr std::uint8_t endpointType = 5;
constexpr std::size_t endpointSize = 7;
// USB 2.0 knows 30 endpoints beside the default one; libusb refuses more than 32 of an interface.
constexpr std::size_t mostEndpoints = 32;
constexpr std::size_t mostInterfaces = 32;

struct Setting
{
    libusb_interface_descriptor descriptor{};
    std::vector<libusb_endpoint_descriptor> endpoints;
};

struct Interface
{
    std::uint8_t number = 0;
    std::vector<Setting> settings;
    std::vector<libusb_interface_descriptor> descriptors;
};

struct HostConfiguration : libusb_config_descriptor
{
    HostConfiguration()
        : libusb_config_descriptor()
    {
    }
    std::vector<Interface> own;
    std::vector<libusb_interface> given;
};

void addSetting(HostConfiguration& all, const std::uint8_t* bytes)
{
    const std::uint8_t number = bytes[2];
    auto found = std::find_if(all.own.begin(), all.own.end(),
                              [number](const Interface& one) { return one.number == number; });
    if (found == all.own.end()) {
        if (all.own.size() == mostInterfaces)
            return;
        found = all.own.insert(found, Interface{number, {}, {}});
    }
    Setting setting;
    setting.descriptor.bLength = bytes[0];
    setting.descriptor.bDescriptorType = bytes[1];
    setting.descriptor.bInterfaceNumber = number;
    setting.descriptor.bAlternateSetting = bytes[3];
    setting.descriptor.bInterfaceClass = bytes[5];
    setting.descriptor.bInterfaceSubClass = bytes[6];
    setting.descriptor.bInterfaceProtocol = bytes[7];
    setting.descriptor.iInterface = bytes[8];
    found->settings.push_back(setting);
}

void addEndpoint(HostConfiguration& all, const std::uint8_t* bytes)
{
    if (all.own.empty() || all.own.back().settings.back().endpoints.size() == mostEndpoints)
        return;
    libusb_endpoint_descriptor endpoint{};
    endpoint.bLength = bytes[0];
    endpoint.bDescriptorType = bytes[1];
    endpoint.bEndpointAddress = bytes[2];
    endpoint.bmAttributes = bytes[3];
    all.own.back().settings.back().endpoints.push_back(endpoint);
}

// The pointers and counts that the user of libusb sees, once nothing moves any more.
void publish(HostConfiguration& all)
{
    for (Interface& interface : all.own) {
        interface.descriptors.reserve(interface.settings.size());
        for (Setting& setting : interface.settings) {
            setting.endpoints.shrink_to_fit();
            setting.descriptor.bNumEndpoints = std::uint8_t(setting.endpoints.size());
            setting.descriptor.endpoint =
                setting.endpoints.empty() ? nullptr : setting.endpoints.data();
            interface.descriptors.push_back(setting.descriptor);
        }
    }
    all.given.reserve(all.own.size());
    for (const Interface& interface : all.own)
        all.given.push_back({interface.descriptors.data(), int(interface.descriptors.size())});
    all.bNumInterfaces = std::uint8_t(all.given.size());
    all.interface = all.given.empty() ? nullptr : all.given.data();
}

} // namespace

libusb_config_descriptor* makeHostConfiguration(const VirtualUnit::Bytes& bytes)
{
    auto all = std::make_unique<HostConfiguration>();
    std::size_t at = configurationSize;
    while (at + 2 <= bytes.size()) {
        const std::size_t length = bytes[at];
        if (length < 2 || at + length > bytes.size())
            break;
        if (bytes[at + 1] == interfaceType && length >= interfaceSize)
            addSetting(*all, &bytes[at]);
        else if (bytes[at + 1] == endpointType && length >= endpointSize)
            addEndpoint(*all, &bytes[at]);
        at += length;
    }
    publish(*all);
    return all.release();
}

void freeHostConfiguration(libusb_config_descriptor* configuration)
{
    delete static_cast<HostConfiguration*>(configuration);
}

} // namespace Fuzz
