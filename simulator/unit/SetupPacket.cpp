#include "unit/SetupPacket.h"

namespace VirtualUnit {

namespace {

std::uint16_t littleEndian(std::uint8_t low, std::uint8_t high)
{
    return static_cast<std::uint16_t>(low | high << 8);
}

std::uint8_t lowByte(std::uint16_t value)
{
    return static_cast<std::uint8_t>(value & 0xFFU);
}

std::uint8_t highByte(std::uint16_t value)
{
    return static_cast<std::uint8_t>(value >> 8);
}

} // namespace

SetupPacket SetupPacket::fromWire(const std::array<std::uint8_t, Size>& wire)
{
    return {wire[0], wire[1], littleEndian(wire[2], wire[3]), littleEndian(wire[4], wire[5]),
            littleEndian(wire[6], wire[7])};
}

std::array<std::uint8_t, SetupPacket::Size> SetupPacket::toWire() const
{
    return {bmRequestType,   bRequest,         lowByte(wValue),  highByte(wValue),
            lowByte(wIndex), highByte(wIndex), lowByte(wLength), highByte(wLength)};
}

} // namespace VirtualUnit
