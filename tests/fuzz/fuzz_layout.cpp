// Memory layouts that a bootloader publishes in its interface string.
#include "Harness.h"
#include "LogInspector.h"
#include "dfu/DfuSeLayout.h"

using namespace AquenSolvar::Device;
using Fuzz::require;

namespace {

qint64 lengthOf(const MemorySegment& segment)
{
    return qint64(segment.endAddress) - segment.startAddress + 1;
}

// The segments written as a layout again, each as a group of its own.
QString layoutOf(const QList<MemorySegment>& segments)
{
    QString text = QStringLiteral("@Again");
    for (const MemorySegment& segment : segments) {
        text += QStringLiteral("/0x%1/%2*%3Bg")
                    .arg(segment.startAddress, 8, 16, QLatin1Char('0'))
                    .arg(segment.pageSize == 0 ? 1 : lengthOf(segment) / segment.pageSize)
                    .arg(segment.pageSize);
    }
    return text;
}

bool same(const MemorySegment& left, const MemorySegment& right)
{
    return left.startAddress == right.startAddress && left.endAddress == right.endAddress &&
           left.pageSize == right.pageSize;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Fuzz::inspectLog();
    const QString text = QString::fromLatin1(Fuzz::bytesOf(data, size));
    const QList<MemorySegment> segments = parseMemoryLayout(text);
    require(segments.size() <= text.size() / 4, "each segment has a group of its own in the text");
    for (const MemorySegment& segment : segments) {
        // The end lies in 32 bits by its type; one that had wrapped would lie below the start.
        const qint64 length = lengthOf(segment);
        require(length >= 0, "a segment ends at its start or above");
        require(segment.pageSize == 0 ? length == 0 : length % segment.pageSize == 0,
                "a segment is made of whole pages");
        if (length == 0)
            continue;
        for (const quint32 address : {segment.startAddress, segment.endAddress}) {
            const MemorySegment found = segmentForAddress(segments, address);
            require(found.startAddress <= address && address <= found.endAddress &&
                        found.pageSize != 0,
                    "an address of a segment is found in one that can be erased");
        }
    }
    const QList<MemorySegment> again = parseMemoryLayout(layoutOf(segments));
    require(again.size() == segments.size() &&
                std::equal(again.begin(), again.end(), segments.begin(), same),
            "the segments written as a layout read back the same");
    return 0;
}
