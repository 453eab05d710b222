// SPDX-License-Identifier: LicenseRef-Proprietary
#include "dfu/DfuSeLayout.h"

#include "qslog/Log.h"

#include <cstdio>

namespace AquenSolvar::Device {

namespace {

constexpr qint64 addressSpace = qint64(1) << 32;

// One "count*size multiplier types" group as read from the text.
struct SectorGroup
{
    long long count = 0;
    long long size = 0;
    char multiplier = 0;
    int consumed = 0;
};

bool scanSectorGroup(const char* cursor, SectorGroup& group)
{
    // The widths keep a number within 64 bits: a longer one is undefined behaviour. The type
    // letters are counted separately: they may be missing at the end of the text.
    int withoutTypes = 0;
    int withTypes = 0;
    // NOLINTNEXTLINE(cert-err34-c): see above
    const int items = std::sscanf(cursor, "%18lld*%18lld%c%n%*[^,/]%n", &group.count, &group.size,
                                  &group.multiplier, &withoutTypes, &withTypes);
    group.consumed = qMax(withoutTypes, withTypes);
    return items >= 3;
}

// The factor of a size; 0 for an invalid letter.
qint64 factorOf(char multiplier)
{
    switch (multiplier) {
    case 'B':
        return 1;
    case 'K':
        return qint64(1) << 10;
    case 'M':
        return qint64(1) << 20;
    default:
        return 0;
    }
}

// The unit's character for a log line, without control characters that would break the line.
QByteArray loggable(char character)
{
    const bool printable = character >= 0x20 && character < 0x7F;
    return printable ? QByteArray(1, character) : "0x" + QByteArray(1, character).toHex();
}

// Appends the segment of a group at @p address and moves the address past it.
bool appendSegment(const SectorGroup& group, qint64& address, QList<MemorySegment>& segments)
{
    const qint64 factor = factorOf(group.multiplier);
    if (factor == 0) {
        QLOG_WARN() << "Unknown multiplier:" << loggable(group.multiplier).constData();
        return false;
    }
    const bool factorsFit = group.count >= 0 && group.count < addressSpace && group.size >= 0 &&
                            group.size < addressSpace / factor;
    const qint64 pageSize = factorsFit ? group.size * factor : 0;
    // After a group that ends with the last address, even an empty group has no valid start. Count
    // and size are below 2^32: dividing instead of multiplying avoids overflow.
    const bool lengthFits = factorsFit && address < addressSpace &&
                            (pageSize == 0 || group.count <= (addressSpace - address) / pageSize);
    const qint64 end = lengthFits ? address + group.count * pageSize - 1 : -1;
    if (end < 0) {
        QLOG_WARN() << "Memory segment does not fit 32 bits:" << group.count << "pages of"
                    << group.size << group.multiplier << "at" << address;
        return false;
    }
    segments.append({quint32(address), quint32(end), quint32(pageSize)});
    address = end + 1;
    return true;
}

} // namespace

QList<MemorySegment> parseMemoryLayout(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    const char* cursor = bytes.constData();
    QList<MemorySegment> segments;

    int consumed = 0;
    std::sscanf(cursor, "@%*[^/]%n", &consumed);
    cursor += consumed;
    for (;;) {
        unsigned long long scanned = 0;
        consumed = 0;
        // NOLINTNEXTLINE(cert-err34-c): sixteen digits fit
        if (std::sscanf(cursor, "/0x%16llx/%n", &scanned, &consumed) < 1 || consumed == 0)
            return segments;
        cursor += consumed;
        if (scanned >= quint64(addressSpace)) {
            QLOG_WARN() << "Memory segment does not fit 32 bits: it starts at" << scanned;
            return segments;
        }
        qint64 address = qint64(scanned);
        SectorGroup group;
        while (scanSectorGroup(cursor, group)) {
            if (!appendSegment(group, address, segments))
                return segments;
            cursor += group.consumed;
            if (*cursor == ',')
                ++cursor;
        }
    }
}

MemorySegment segmentForAddress(const QList<MemorySegment>& segments, quint32 address)
{
    for (const MemorySegment& segment : segments) {
        if (segment.startAddress <= address && address <= segment.endAddress)
            return segment;
    }
    return MemorySegment();
}

} // namespace AquenSolvar::Device
