#include "unit/Descriptors.h"

#include "unit/Protocol.h"

#include <algorithm>

namespace VirtualUnit::Descriptors {

namespace {

std::uint8_t low(unsigned value)
{
    return static_cast<std::uint8_t>(value & 0xFFU);
}

std::uint8_t high(unsigned value)
{
    return static_cast<std::uint8_t>(value >> 8 & 0xFFU);
}

std::string productName(const Identity& identity)
{
    const std::string name = identity.kind == Kind::Aquen ? "Aquen" : "Solvar";
    return identity.mode == Mode::Bootloader ? name + " DFU" : name;
}

Bytes encode(const std::string& content)
{
    // bLength is one byte: 126 UTF-16 characters at most.
    const std::size_t characters = std::min<std::size_t>(content.size(), 126);
    Bytes descriptor = {low(static_cast<unsigned>(2 + 2 * characters)), Standard::StringDescriptor};
    for (std::size_t i = 0; i < characters; ++i) {
        descriptor.push_back(static_cast<std::uint8_t>(content[i]));
        descriptor.push_back(0);
    }
    return descriptor;
}

} // namespace

std::uint16_t productId(Kind kind, Mode mode)
{
    if (mode == Mode::Bootloader)
        return kind == Kind::Aquen ? 0x0C05 : 0x0C06;
    return kind == Kind::Aquen ? 0x0C07 : 0x0C08;
}

Bytes device(const Identity& identity)
{
    const std::uint16_t product = productId(identity.kind, identity.mode);
    return {18,
            Standard::DeviceDescriptor,
            0x00,
            0x02, // bcdUSB 2.00
            0,
            0,
            0,  // the class stands in the interface
            64, // bMaxPacketSize0
            low(VendorId),
            high(VendorId),
            low(product),
            high(product),
            0x00,
            0x02, // bcdDevice 2.00
            ManufacturerString,
            ProductString,
            SerialString,
            1};
}

Bytes configuration(const Identity& identity, const Overrides& overrides)
{
    if (overrides.configurationDescriptor)
        return *overrides.configurationDescriptor;
    const bool bootloader = identity.mode == Mode::Bootloader;
    const std::uint8_t total = bootloader ? 27 : 18;
    Bytes descriptor = {9, Standard::ConfigurationDescriptor, total, 0, 1, 1, 0, 0xC0, 50};
    const Bytes interface = {9,
                             4,
                             0,
                             0,
                             0,
                             static_cast<std::uint8_t>(bootloader ? 0xFE : 0xFF),
                             static_cast<std::uint8_t>(bootloader ? 1 : 0),
                             static_cast<std::uint8_t>(bootloader ? 2 : 0),
                             InterfaceString};
    descriptor.insert(descriptor.end(), interface.begin(), interface.end());
    if (bootloader) {
        // Can download, can upload, detaches by itself, is not manifestation tolerant; 255 ms.
        const Bytes functional = {
            9,    0x21, 0x0B, 0xFF, 0, low(overrides.transferSize), high(overrides.transferSize),
            0x1A, 0x01};
        descriptor.insert(descriptor.end(), functional.begin(), functional.end());
    }
    return descriptor;
}

std::optional<std::string> text(std::uint8_t index, const Identity& identity,
                                const Overrides& overrides, const std::string& layout)
{
    switch (index) {
    case ManufacturerString:
        return "Quillon";
    case ProductString:
        return productName(identity);
    case SerialString:
        return identity.usbSerial;
    case InterfaceString:
        return identity.mode == Mode::Bootloader ? overrides.layout.value_or(layout)
                                                 : productName(identity) + " control";
    default:
        return std::nullopt;
    }
}

Bytes string(std::uint8_t index, const Identity& identity, const Overrides& overrides,
             const std::string& layout)
{
    if (index == 0)
        return {4, Standard::StringDescriptor, 0x09, 0x04}; // English (United States)
    const auto content = text(index, identity, overrides, layout);
    return content ? encode(*content) : Bytes();
}

} // namespace VirtualUnit::Descriptors
