// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "devices/AttachedUnit.h"

#include <QStringList>

namespace AquenSolvar::Device {

/// The units that an update is for.
struct UnitSelection
{
    enum class Result
    {
        Selected, ///< possibly no unit: none needs an update
        NoSuchUnit,
        NoAccess, ///< no such unit, but one whose name cannot be read
        Ambiguous
    };

    Result result = Result::Selected;
    QList<AttachedUnit> units; ///< the selected ones, or those that match
    QString message;           ///< why not, for people
};

/// Selects units by the user's words: serial name, "aquen", "solvar" or port. Without words, those
/// that need an update or cannot be opened, or with @p force all. Each word, or none, must result
/// in one unit, unless @p all is set. Pure.
UnitSelection selectUnits(const QList<AttachedUnit>& attached, const QStringList& words, bool all,
                          bool force);

} // namespace AquenSolvar::Device
