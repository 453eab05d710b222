// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Overrides.h"

namespace VirtualUnit {

enum class Kind
{
    Aquen,
    Solvar,
};

enum class Mode
{
    Application,
    Bootloader,
};

/// The identity of a unit on the bus.
struct Identity
{
    Kind kind = Kind::Aquen;
    Mode mode = Mode::Application;
    std::string usbSerial; ///< iSerialNumber, the same in both modes
};

/// The unit's descriptors (USB 2.0, section 9.6). Pure functions.
namespace Descriptors {

constexpr std::uint8_t ManufacturerString = 1;
constexpr std::uint8_t ProductString = 2;
constexpr std::uint8_t SerialString = 3;
constexpr std::uint8_t InterfaceString = 4;

constexpr std::uint16_t VendorId = 0x16D0;

std::uint16_t productId(Kind kind, Mode mode);
Bytes device(const Identity& identity);

/// The configuration with its one interface; in bootloader mode the DFU functional descriptor
/// (DFU 1.1, table 4.2) comes last.
Bytes configuration(const Identity& identity, const Overrides& overrides);

/// The text of the string with that index; empty when there is no such string.
std::string text(std::uint8_t index, const Identity& identity, const Overrides& overrides);

/// The string descriptor of that index; empty when there is none. The text is taken as ASCII.
Bytes string(std::uint8_t index, const Identity& identity, const Overrides& overrides);

} // namespace Descriptors
} // namespace VirtualUnit
