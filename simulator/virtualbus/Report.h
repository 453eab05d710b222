#pragma once

#include "virtualbus/UnitOption.h"

#include <ostream>

namespace VirtualUnit {

/// One line for what has become of a unit: "unit=aquen mode=application firmware=1.3.1 bus=yes
/// length=16384 sha256=..."; length and checksum are those of Unit::applicationContent, and
/// firmware is "-" when no valid image is there.
void writeReport(std::ostream& out, const LabelledUnit& unit, bool onBus);

/// Every control request the unit got, a line each: seconds since the first one, mode, name, setup
/// packet, outcome, and how many bytes went either way.
void writeTrace(std::ostream& out, const LabelledUnit& unit);

} // namespace VirtualUnit
