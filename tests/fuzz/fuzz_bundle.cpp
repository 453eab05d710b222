// SPDX-License-Identifier: LicenseRef-Proprietary
// Firmware bundles: the input as a bundle file, and as the image of a bundle that is then damaged.
#include "Harness.h"
#include "firmware/FirmwareBundle.h"

#include <QDataStream>

using namespace AquenSolvar::Device;

namespace {

bool reads(const QByteArray& file, FirmwareBundle& bundle)
{
    bundle = {-7, "untouched"};
    const bool read = parseFirmwareBundle(file, bundle) == FirmwareRead;
    assert(read || (bundle.version == -7 && bundle.data == "untouched"));
    return read;
}

} // namespace

void check(const QByteArray& input)
{
    FirmwareBundle bundle;
    reads(input, bundle);

    qint32 version = 0;
    quint16 position = 0;
    quint8 mask = 0;
    QDataStream(input) >> version >> position >> mask;
    const QByteArray image = input.mid(7);
    QByteArray file = packFirmwareBundle(version, image);
    assert(reads(file, bundle) && bundle.version == version && bundle.data == image);

    const int at = position % file.size();
    assert(!reads(file.left(at), bundle));
    file[at] = static_cast<char>(file[at] ^ mask);
    // Nothing protects the version, and some flags of the envelope have no meaning.
    const bool mayRead = mask == 0 || (at >= 24 && at < 28) || at == 33;
    assert(!reads(file, bundle) || (mayRead && bundle.data == image));
}
