#pragma once

#include "devices/I_Device.h"

namespace AquenSolvar::Device {

/// What the program knows about one kind of unit in one mode.
struct UnitKind
{
    quint16 productId;           ///< USB product id, under vendor 0x16D0
    I_Device::DeviceType type;   ///< as shown to the user interface
    bool dfu;                    ///< runs its bootloader
    const char* name;            ///< for log lines
    const char* arrivalText;     ///< log line when one arrives
    const char* removalText;     ///< log line when one leaves
    const char* serialName;      ///< label of a bootloader; empty where the unit reports its own
    const char* firmwarePattern; ///< name filter of its firmware bundles; empty outside bootloaders
};

/// The kind of a USB product id; null for an id that is no unit of ours. Any thread.
const UnitKind* unitKindOf(quint16 productId);

} // namespace AquenSolvar::Device
