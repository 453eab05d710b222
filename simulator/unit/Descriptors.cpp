// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/Descriptors.h"

#include "unit/Protocol.h"

namespace VirtualUnit::Descriptors {

std::uint16_t productId(Kind kind, Mode mode)
{
    const std::uint16_t first = mode == Mode::Bootloader ? 0x0C05 : 0x0C07;
    return kind == Kind::Aquen ? first : first + 1;
}

Bytes device(const Identity& identity)
{
    // USB 2.00, class given by the interface, packets of 64 bytes, release 2.00, strings 1 to 3.
    Bytes descriptor = {18, 1, 0x00, 0x02, 0, 0, 0, 64, 0, 0, 0, 0, 0x00, 0x02, 1, 2, 3, 1};
    writeNumber(&descriptor[8], 2, VendorId);
    writeNumber(&descriptor[10], 2, productId(identity.kind, identity.mode));
    return descriptor;
}

Bytes configuration(const Identity& identity, const Overrides& overrides)
{
    // Self-powered, 100 mA; interface 0 without endpoints, of a vendor's class, string 4.
    if (identity.mode == Mode::Application)
        return {9, 2, 18, 0, 1, 1, 0, 0xC0, 50, 9, 4, 0, 0, 0, 0xFF, 0, 0, 4};
    // The same of the class DFU in DFU mode. Can download and upload, detaches by itself, is not
    // manifestation tolerant; 255 ms, DfuSe 1.1a.
    Bytes descriptor = {9,    2, 27, 0, 1, 1,    0,    0xC0, 50, 9, 4, 0,    0,   0,
                        0xFE, 1, 2,  4, 9, 0x21, 0x0B, 0xFF, 0,  0, 0, 0x1A, 0x01};
    writeNumber(&descriptor[23], 2, overrides.transferSize);
    return descriptor;
}

std::string text(std::uint8_t index, const Identity& identity, const Overrides& overrides)
{
    const bool bootloader = identity.mode == Mode::Bootloader;
    const std::string name = identity.kind == Kind::Aquen ? "Aquen" : "Solvar";
    switch (index) {
    case ManufacturerString:
        return "Quillon";
    case ProductString:
        return bootloader ? name + " DFU" : name;
    case SerialString:
        return identity.usbSerial;
    case InterfaceString:
        return bootloader ? overrides.layout : name + " control";
    default:
        return {};
    }
}

Bytes string(std::uint8_t index, const Identity& identity, const Overrides& overrides)
{
    if (index == 0)
        return {4, Standard::StringDescriptor, 0x09, 0x04}; // English (United States)
    if (index > InterfaceString)
        return {};
    // bLength is one byte: at most 126 UTF-16 characters.
    const std::string content = text(index, identity, overrides).substr(0, 126);
    Bytes descriptor = {static_cast<std::uint8_t>(2 + 2 * content.size()),
                        Standard::StringDescriptor};
    for (const char character : content) {
        descriptor.push_back(static_cast<std::uint8_t>(character));
        descriptor.push_back(0);
    }
    return descriptor;
}

} // namespace VirtualUnit::Descriptors
