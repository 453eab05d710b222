// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

namespace AquenSolvar::Device {

/// A range of flash with erasable pages of one size.
struct MemorySegment
{
    quint32 startAddress = 0;
    quint32 endAddress = 0; ///< inclusive
    quint32 pageSize = 0;   ///< bytes
};

/// Parses the memory layout in the interface string of a DfuSe bootloader: a name after "@", then
/// groups such as "/0x08000000/07*002Ka,121*002Kg". Numbers of a group are decimal even with
/// leading zeros. A malformed text gives the segments before the error; an unknown multiplier and a
/// segment beyond 32 bits are logged. Any thread.
QList<MemorySegment> parseMemoryLayout(const QString& text);

/// The first segment that contains the address; three zeros if none does. Any thread.
MemorySegment segmentForAddress(const QList<MemorySegment>& segments, quint32 address);

} // namespace AquenSolvar::Device
