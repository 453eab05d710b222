// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "control/UnitOption.h"

#include <QTextStream>

namespace VirtualUnit {

/// One line about the unit: "unit=aquen mode=application firmware=1.3.1 bus=yes length=16384
/// sha256=..."; length and checksum are those of Unit::applicationContent, and firmware is "-" when
/// there is no valid image.
void writeReport(QTextStream& out, const LabelledUnit& unit, bool onBus);

/// Every control request the unit received, a line each: seconds since the first one, mode, name,
/// setup packet, outcome, and how many bytes went either way.
void writeTrace(QTextStream& out, const LabelledUnit& unit);

} // namespace VirtualUnit
