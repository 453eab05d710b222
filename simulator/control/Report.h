// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "bus/Bus.h"
#include "control/UnitOption.h"

#include <QFile>

namespace VirtualUnit {

/// Waits for units that are about to leave or return, then writes a line about each unit:
/// "unit=aquen mode=application firmware=1.3.1 bus=yes length=16384 sha256=..."; length and
/// checksum are those of Unit::applicationContent, and firmware is "-" when there is no valid
/// image.
///
/// If @p trace is open it gets every control request that the units received, a line each: unit,
/// seconds since its first one, mode, name, setup packet, outcome, and how many bytes went either
/// way. Throws std::runtime_error when a line cannot be written.
void writeReports(QFile& report, QFile& trace, const Bus& bus,
                  const std::vector<LabelledUnit>& units);

} // namespace VirtualUnit
