#pragma once

#include "unit/Unit.h"

namespace VirtualUnit {

/// A unit under the label by which scripts and the report call it.
struct LabelledUnit
{
    std::string label;
    bool plugged = true; ///< on the bus from the start
    P_Unit unit;
};

/// Makes a unit of what stands behind --unit: KIND[:KEY=VALUE]..., see unitOptionHelp. The label is
/// the kind unless given; @p before are the units made so far, so that each label is unique. Throws
/// std::invalid_argument with a text for the user.
LabelledUnit makeUnit(const std::string& option, const std::vector<LabelledUnit>& before);

extern const char* const unitOptionHelp;

} // namespace VirtualUnit
