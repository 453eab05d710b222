// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Unit.h"

#include <QString>

namespace VirtualUnit {

/// A unit under its name in control lines and in the report.
struct LabelledUnit
{
    QString label;
    bool plugged = true; ///< on the bus from the start
    P_Unit unit;
};

/// Makes a unit of a value of --unit: KIND[:KEY=VALUE]..., see unitOptionHelp(). @p before are the
/// units made so far, as labels are unique. Throws std::invalid_argument with a text for the user.
LabelledUnit makeUnit(const QString& option, const std::vector<LabelledUnit>& before);

QString unitOptionHelp();

/// The text as a firmware version. Throws std::invalid_argument with a text for the user unless it
/// is X.Y.Z in decimal digits, as long as a unit can report it.
std::string firmwareVersion(const QString& text);

} // namespace VirtualUnit
