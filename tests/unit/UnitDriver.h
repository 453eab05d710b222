#pragma once

#include "unit/Unit.h"

#include <QString>

/// Drives a unit's model without a bus, as a host would. Time stands still unless moved.
class UnitDriver
{
public:
    static constexpr std::uint32_t ApplicationStart = 0x08003800;

    explicit UnitDriver(const VirtualUnit::UnitSetup& setup = {});

    VirtualUnit::Unit& unit() { return m_unit; }
    void pass(VirtualUnit::milliseconds time) { m_now += time; }

    VirtualUnit::Answer download(std::uint16_t block, const VirtualUnit::Bytes& data);
    VirtualUnit::Answer read(std::uint8_t request, std::uint16_t value, std::uint16_t length);
    VirtualUnit::Answer write(std::uint8_t request);
    VirtualUnit::Answer command(std::uint8_t code, std::uint32_t address);

    /// Polls until the unit is no longer busy; bStatus and bState of the last answer.
    std::pair<int, int> poll();

    /// One step, numbers in hexadecimal: "set:ADDRESS", "erase:ADDRESS", "write:BLOCK:LENGTH",
    /// "raw:COMMAND", "finish", "up:BLOCK:LENGTH", "st" (GETSTATUS), "clr", "abort", "detach",
    /// "wait" (a second passes).
    VirtualUnit::Answer step(const QString& text);

    /// Writes @p image as a host does, up to @p limit bytes, without the end of the transfer.
    /// Whether the unit took all of it.
    bool flash(const VirtualUnit::Bytes& image, std::size_t limit);

private:
    VirtualUnit::Clock::time_point m_now;
    VirtualUnit::Unit m_unit;
};
