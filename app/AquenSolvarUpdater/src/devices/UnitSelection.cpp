// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/UnitSelection.h"

#include <algorithm>

namespace AquenSolvar::Device {

namespace {

using Result = UnitSelection::Result;

bool matches(const AttachedUnit& unit, const QString& word)
{
    return unit.port == word || unit.name == word ||
           unit.kindWord().compare(word, Qt::CaseInsensitive) == 0;
}

template <typename Condition>
QList<AttachedUnit> filtered(const QList<AttachedUnit>& units, Condition condition)
{
    QList<AttachedUnit> result;
    std::copy_if(units.begin(), units.end(), std::back_inserter(result), condition);
    return result;
}

UnitSelection none(const QList<AttachedUnit>& attached, const QString& word)
{
    const auto closed = std::find_if(attached.begin(), attached.end(),
                                     [](const AttachedUnit& unit) { return bool(unit.error); });
    if (closed != attached.end())
        return {Result::NoAccess,
                {},
                QStringLiteral("No unit \"%1\"; the one on port %2 cannot be read. %3")
                    .arg(word, closed->port, remedyFor(*closed->error))};
    return {Result::NoSuchUnit,
            {},
            QStringLiteral("No unit \"%1\". The bootloader of a unit does not know its name: "
                           "use the port there.")
                .arg(word)};
}

UnitSelection ambiguous(const QList<AttachedUnit>& units)
{
    return {Result::Ambiguous, units,
            QStringLiteral("Several units match: name one, for example by its port, or use "
                           "--all.")};
}

} // namespace

UnitSelection selectUnits(const QList<AttachedUnit>& attached, const QStringList& words, bool all,
                          bool force)
{
    if (attached.isEmpty())
        return {Result::NoSuchUnit, {}, QStringLiteral("No unit is attached.")};
    if (words.isEmpty()) {
        const auto candidates = filtered(attached, [force](const AttachedUnit& unit) {
            return force || unit.needsUpdate || unit.error;
        });
        if (candidates.isEmpty())
            return {Result::Selected, {}, QStringLiteral("All units are up to date.")};
        return candidates.size() > 1 && !all ? ambiguous(candidates)
                                             : UnitSelection{Result::Selected, candidates, {}};
    }
    QStringList ports;
    for (const QString& word : words) {
        const auto found =
            filtered(attached, [&word](const AttachedUnit& unit) { return matches(unit, word); });
        if (found.isEmpty())
            return none(attached, word);
        if (found.size() > 1 && !all)
            return ambiguous(found);
        for (const AttachedUnit& unit : found)
            ports.append(unit.port);
    }
    return {Result::Selected,
            filtered(attached,
                     [&ports](const AttachedUnit& unit) { return ports.contains(unit.port); }),
            {}};
}

} // namespace AquenSolvar::Device
