// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tarnware/ImageFormat.h"

#include "firmware/FirmwareBundle.h"

#include <QRegularExpression>

using namespace AquenSolvar::Device;

namespace {

// The suffix ends with the signature, its own length and a checksum of four bytes.
bool hasDfuSuffix(const QByteArray& contents)
{
    return contents.size() >= 16 && contents.right(8).left(4) == QByteArray("UFD\x10");
}

} // namespace

QString formatOtherThanRaw(const QByteArray& contents)
{
    static const QRegularExpression hexRecord(QStringLiteral("^:[0-9A-Fa-f]{8}"));
    FirmwareBundle bundle;
    if (contents.startsWith("\177ELF"))
        return QStringLiteral("an ELF file");
    if (hexRecord.match(QString::fromLatin1(contents.left(9))).hasMatch())
        return QStringLiteral("an Intel HEX file");
    if (contents.startsWith("DfuSe"))
        return QStringLiteral("a DfuSe file");
    if (hasDfuSuffix(contents))
        return QStringLiteral("a file with a DFU suffix");
    if (parseFirmwareBundle(contents, bundle) != FirmwareMagicWrong)
        return QStringLiteral("a firmware bundle");
    return {};
}
