// SPDX-License-Identifier: LicenseRef-Proprietary
// What a unit sends: responses of its application firmware, DFU status, functional descriptor.
#include "Harness.h"
#include "devices/VendorProtocol.h"
#include "dfu/DfuProtocol.h"

#include <QDataStream>

#include <tuple>

using namespace AquenSolvar::Device;

namespace {

// Little-endian; the sign of a byte reaches all bits above it.
quint32 widened(const QByteArray& bytes)
{
    quint32 value = 0;
    for (int i = 0; i < bytes.size(); ++i)
        value |= quint32(qint8(bytes[i])) << (8 * i);
    return value;
}

} // namespace

void check(const QByteArray& input)
{
    const QString version = cleanedFirmwareVersion(input);
    assert(input.startsWith(version.toLatin1()));
    assert(isOlderThan(version, {0, 0, 0}) == (version.count(QLatin1Char('.')) < 2));
    assert(serialNameInPage(input) == QString::fromUtf8(input.mid(16, 32).split('\0').first()));

    quint16 a = 0, b = 0, c = 0, d = 0, e = 0, f = 0;
    QDataStream(input) >> a >> b >> c >> d >> e >> f;
    const QString dotted = QStringLiteral("%1.%2.%3.9").arg(a).arg(b).arg(c);
    assert(isOlderThan(dotted, {d, e, f}) == (std::tie(a, b, c) < std::tie(d, e, f)));

    const QByteArray bytes = input.leftJustified(6, '\0');
    const DfuStatusReply reply = decodeStatusReply(input);
    assert(reply.status == qint8(bytes[0]) && reply.state == qint8(bytes[4]));
    assert(reply.pollTimeout == widened(bytes.mid(1, 3)));

    DfuFunctionalDescriptor found;
    const int total = input.size() < 4 ? 0 : qint32(widened(input.mid(2, 2)));
    const QByteArray last = input.left(qMax(total, 0)).right(9);
    assert(decodeFunctionalDescriptor(input, found) == (last.size() == 9));
    assert(last.size() < 9 || (found.attributes == quint8(last[2]) &&
                               found.detachTimeout == quint16(widened(last.mid(3, 2))) &&
                               found.transferSize == quint16(widened(last.mid(5, 2)))));
}
