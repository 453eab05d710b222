// Firmware bundles: the input as a bundle file, and the input as what a sound bundle carries.
#include "Envelope.h"
#include "Harness.h"
#include "firmware/FirmwareBundle.h"

#include <QDataStream>

using namespace AquenSolvar::Device;
using Fuzz::require;

namespace {

const FirmwareBundle untouched{-7, "untouched"};

// Fails when a bundle that was read is not what it says, or one that was refused left traces.
bool checkedParse(const QByteArray& file)
{
    FirmwareBundle bundle = untouched;
    const int result = parseFirmwareBundle(file, bundle);
    require(!firmwareReadResultText(result).startsWith(QLatin1String("unknown")),
            "each result is one of those stated");
    if (result != FirmwareRead) {
        require(bundle.version == untouched.version && bundle.data == untouched.data,
                "a refused bundle leaves the result untouched");
        return false;
    }
    require(bundle.data.size() <= largestFirmwareBundle, "an image has at most 16 MiB");
    FirmwareBundle again;
    require(parseFirmwareBundle(packFirmwareBundle(bundle.version, bundle.data), again) ==
                    FirmwareRead &&
                again.version == bundle.version && again.data == bundle.data,
            "what was read packs and reads back the same");
    return true;
}

// A bundle whose frame is right, around an envelope with these flags and this stored payload.
QByteArray framed(std::uint8_t flags, const QByteArray& payload, const QByteArray& image)
{
    QByteArray file;
    QDataStream stream(&file, QIODevice::WriteOnly);
    stream << QStringLiteral("tarnware") << qint32(1) << qint32(7) << Fuzz::sealed(flags, payload)
           << qint32(image.size()) << qint16(qChecksum(image.constData(), uint(image.size())));
    return file;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input = Fuzz::bytesOf(data, size);
    if (checkedParse(input)) {
        // The last field ends where a shorter file no longer reads.
        int end = input.size();
        FirmwareBundle ignored;
        while (end > 0 && parseFirmwareBundle(input.left(end - 1), ignored) == FirmwareRead)
            --end;
        require(end > 0, "nothing at all is no bundle");
    }
    if (input.isEmpty())
        return 0;
    const auto flags = std::uint8_t(input[0]);
    const QByteArray payload = input.mid(1);
    const bool compressed = (flags & 1) != 0;
    require(checkedParse(framed(flags, payload, payload)) || compressed,
            "a sound bundle of an image stored as it is reads");
    const QByteArray packed = qCompress(payload, 1);
    require(checkedParse(framed(flags | 1, packed, payload)),
            "a sound bundle of a compressed image reads");
    return 0;
}
