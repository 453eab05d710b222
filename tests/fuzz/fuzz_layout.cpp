// SPDX-License-Identifier: LicenseRef-Proprietary
// Memory layouts: the input as a bootloader's text, and as the numbers of a well-formed text.
#include "Harness.h"
#include "dfu/DfuSeLayout.h"

#include <QDataStream>

using namespace AquenSolvar::Device;

namespace {

constexpr qint64 limit = qint64(1) << 32; // of addresses and sizes

QString textOf(qint64 start, qint64 end, qint64 pageSize)
{
    const qint64 length = end - start + 1;
    assert(length >= 0 && (pageSize == 0 ? length == 0 : length % pageSize == 0));
    return QString::asprintf("%llx to %llx in pages of %llx\n", start, end, pageSize);
}

QString parsed(const QString& layout)
{
    QString text;
    for (const MemorySegment& segment : parseMemoryLayout(layout))
        text += textOf(segment.startAddress, segment.endAddress, segment.pageSize);
    return text;
}

} // namespace

void check(const QByteArray& input)
{
    parsed(QString::fromLatin1(input));

    QString layout = QStringLiteral("@Name");
    QString expected;
    qint64 address = -1;
    bool valid = true;
    for (QDataStream in(input); !in.atEnd();) {
        quint32 start = 0;
        quint16 count = 0, size = 0;
        quint8 form = 0;
        in >> form >> count >> size;
        if (form >= 0x80 || address < 0) {
            in >> start;
            address = start;
            layout += QString::asprintf("/0x%08x/", start);
        }
        const int unit = form % 4; // the fourth letter is no multiplier
        layout += QString::asprintf("%02d*%03d%cg,", count, size, "BKMX"[unit]);
        const qint64 pageSize = qint64(size) << (10 * unit);
        const qint64 end = address + count * pageSize;
        valid = valid && unit < 3 && pageSize < limit && address < limit && end > 0 && end <= limit;
        if (valid)
            expected += textOf(address, end - 1, pageSize);
        address = valid ? end : 0;
    }
    assert(parsed(layout) == expected);
}
