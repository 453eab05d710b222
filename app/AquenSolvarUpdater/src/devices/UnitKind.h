// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "devices/I_Device.h"

namespace AquenSolvar::Device {

/// The facts about one kind of unit in one mode, in one table.
struct UnitKind
{
    quint16 productId;           ///< USB product id, under vendor 0x16D0
    I_Device::DeviceType type;   ///< for the user interface
    bool dfu;                    ///< runs its bootloader
    const char* name;            ///< for log lines
    const char* arrivalText;     ///< log line when one arrives
    const char* removalText;     ///< log line when one leaves
    const char* serialName;      ///< label of a bootloader; empty if the unit reports its own
    const char* firmwarePattern; ///< name filter of its firmware bundles; empty if no bootloader
    const char* product;         ///< its name for people, in either mode; never translated
};

/// The kind with this USB product id; null if there is none. Any thread.
const UnitKind* unitKindOf(quint16 productId);

/// The kind of this type; null for UNKNOWN. Any thread.
const UnitKind* unitKindOf(I_Device::DeviceType type);

/// The kind of the same unit in its bootloader; @p kind itself if it is one. Any thread.
const UnitKind& bootloaderOf(const UnitKind& kind);

} // namespace AquenSolvar::Device
