// SPDX-License-Identifier: LicenseRef-Proprietary
#include "devices/UnitKind.h"

#include <QCoreApplication>

namespace AquenSolvar::Device {

namespace {

constexpr UnitKind unitKinds[] = {
    {0x0C05, I_Device::AQUEN_DFU, true, "Aquen (DFU)", "Aquen (DFU) detected...",
     "Aquen (DFU) removed...",
     //: Title of a card (30 letters; CJK 15): a washing unit in its bootloader, which waits for
     //: an update. Aquen is a name.
     QT_TRANSLATE_NOOP("UnitTitle", "Aquen (Update)"), "aquen-v*.tarnware", "Aquen"},
    {0x0C06, I_Device::SOLVAR_DFU, true, "Solvar (DFU)", "Solvar (DFU) detected...",
     "Solvar (DFU) removed...",
     //: Title of a card (30 letters; CJK 15): a curing unit in its bootloader, which waits for an
     //: update. Solvar is a name.
     QT_TRANSLATE_NOOP("UnitTitle", "Solvar (Update)"), "solvar-v*.tarnware", "Solvar"},
    {0x0C07, I_Device::AQUEN, false, "Aquen", "Aquen detected...", "Aquen removed...", "", "",
     "Aquen"},
    {0x0C08, I_Device::SOLVAR, false, "Solvar", "Solvar detected...", "Solvar removed...", "", "",
     "Solvar"},
};

} // namespace

const UnitKind* unitKindOf(quint16 productId)
{
    for (const UnitKind& kind : unitKinds) {
        if (kind.productId == productId)
            return &kind;
    }
    return nullptr;
}

const UnitKind* unitKindOf(I_Device::DeviceType type)
{
    for (const UnitKind& kind : unitKinds) {
        if (kind.type == type)
            return &kind;
    }
    return nullptr;
}

const UnitKind& bootloaderOf(const UnitKind& kind)
{
    for (const UnitKind& candidate : unitKinds) {
        // The type of a bootloader follows that of its application mode.
        if (candidate.dfu && (candidate.type == kind.type || candidate.type == kind.type + 1))
            return candidate;
    }
    return kind;
}

} // namespace AquenSolvar::Device
