// Writes the first seeds of each corpus, out of what the product's own tool and the model of a unit
// make: make_seeds DIRECTORY. Files that are there stay as they are.
#include "Common/SimpleCipher.h"
#include "Envelope.h"
#include "HostileUnit.h"
#include "firmware/FirmwareBundle.h"
#include "unit/Descriptors.h"
#include "unit/FirmwareImage.h"
#include "unit/Flash.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using Fuzz::HostileUnit;
using VirtualUnit::Bytes;
using VirtualUnit::Kind;
using VirtualUnit::Mode;

namespace {

class Corpora
{
public:
    explicit Corpora(const QString& directory)
        : m_root(directory)
    {
    }

    void add(const char* target, const char* name, const QByteArray& bytes)
    {
        const QString folder = QString::fromLatin1(target);
        m_root.mkpath(folder);
        QFile file(m_root.filePath(folder + QLatin1Char('/') + QString::fromLatin1(name)));
        if (file.exists())
            return;
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            std::fprintf(stderr, "make_seeds: %s: %s\n", qPrintable(file.fileName()),
                         qPrintable(file.errorString()));
            failed = true;
        }
    }

    bool failed = false;

private:
    QDir m_root;
};

QByteArray toByteArray(const Bytes& bytes)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), int(bytes.size()));
}

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

void addBundles(Corpora& corpora)
{
    const QByteArray image = toByteArray(VirtualUnit::makeImage(300, "1.3.1"));
    const QByteArray bundle = AquenSolvar::Device::packFirmwareBundle(131, image);
    corpora.add("bundle", "whole", bundle);
    corpora.add("bundle", "cut-in-the-payload", bundle.left(200));
    corpora.add("bundle", "cut-checksum", bundle.chopped(1));
    corpora.add("bundle", "longer", bundle + "more");
    corpora.add("bundle", "zeros", AquenSolvar::Device::packFirmwareBundle(1, QByteArray(9999, 0)));
    corpora.add("bundle", "empty-image", AquenSolvar::Device::packFirmwareBundle(-1, QByteArray()));

    Common::SimpleCipher cipher(Common::defaultCipherKey);
    corpora.add("cipher", "image", cipher.encryptToByteArray(image));
    const QByteArray text("the quick brown fox jumps over the lazy dog, the lazy dog");
    using Protection = Common::SimpleCipher::ProtectionMode;
    for (const Protection protection : {Protection::None, Protection::Hash}) {
        cipher.setProtectionMode(protection);
        corpora.add("cipher", protection == Protection::None ? "bare" : "hashed",
                    cipher.encryptToByteArray(text));
    }
    corpora.add("cipher", "payload-compressed", '\3' + qCompress(text));
    corpora.add("cipher", "payload-states-too-much", hex("01ffffffff") + qCompress(text).mid(4));
    corpora.add("cipher", "payload-states-too-little", hex("0200000001") + qCompress(text).mid(4));
}

void addDescriptors(Corpora& corpora)
{
    const std::string layout = VirtualUnit::Flash().layout();
    corpora.add("layout", "unit", QByteArray::fromStdString(layout));
    corpora.add("layout", "three-sizes", "@Internal Flash /0x08000000/04*016Kg,01*064Kg,07*128Kg");
    corpora.add("layout", "two-areas", "@A/0x08000000/2*001Mg/0x1FFF0000/1*512Be");
    corpora.add("layout", "ends-with-the-addresses", "@A/0xFFFFF800/1*2Kg");
    corpora.add("layout", "past-the-addresses", "@A/0xFFFFF800/2*2Kg,1*1Bg");
    corpora.add("layout", "overlong-numbers", "@A/0x8000000/99999999999999999999*99999999999Mg");

    VirtualUnit::Overrides overrides;
    const auto configuration = [&overrides](Kind kind, Mode mode) {
        return toByteArray(VirtualUnit::Descriptors::configuration({kind, mode, ""}, overrides));
    };
    const QByteArray bootloader = configuration(Kind::Aquen, Mode::Bootloader);
    corpora.add("configuration", "bootloader", bootloader);
    corpora.add("configuration", "application", configuration(Kind::Solvar, Mode::Application));
    corpora.add("configuration", "cut", bootloader.left(20));
    overrides.transferSize = 0xFF80;
    corpora.add("configuration", "widened-size", configuration(Kind::Solvar, Mode::Bootloader));
    const QByteArray setting = bootloader.mid(9, 9);
    QByteArray two = bootloader.left(18) + setting + hex("07058102400000") + bootloader.mid(18);
    two[2] = char(two.size());
    two[21] = 1;
    corpora.add("configuration", "two-settings-and-an-endpoint", two);
}

void addAnswers(Corpora& corpora)
{
    QByteArray page(74, 'p');
    page.replace(16, 32, QByteArray("Left of the window").leftJustified(32, '\0'));
    const QByteArray version = QByteArray("1.2.9").leftJustified(8, '\0');
    const QByteArray revision = QByteArray("g0123abc").leftJustified(64, '\0');
    corpora.add("application", "schema-5", hex("0005000000") + page + version + revision);
    corpora.add("application", "schema-4", hex("0104000000") + page.left(64) + version + revision);
    corpora.add("application", "schema-6", hex("0006000000"));
    corpora.add("application", "page-stalls", hex("0405000000"));
    corpora.add("application", "name-not-text",
                hex("0005000000") + QByteArray(74, '\xE2') + "1.3.1-rc");
}

// Scripts of whole updates; the numbers of honest entries say how far each comes first.
void addUpdates(Corpora& corpora)
{
    const auto deed = [](HostileUnit::Deed what) {
        return QByteArray(1, char(0x80 + what));
    };
    const QByteArray aquen(1, '\0');
    corpora.add("update", "honest", aquen + QByteArray(90, '\0'));
    corpora.add("update", "honest-solvar", "\x01" + QByteArray(90, '\0'));
    for (const int before : {3, 8, 12, 20, 26, 30, 40, 60, 75}) {
        const QByteArray until = aquen + QByteArray(before, '\0');
        const auto add = [&](const char* name, const QByteArray& entry) {
            corpora.add("update",
                        qPrintable(QStringLiteral("%1-%2").arg(QLatin1String(name)).arg(before)),
                        until + entry + QByteArray(20, '\0'));
        };
        add("stall", deed(HostileUnit::Stall));
        add("status", deed(HostileUnit::AnswerStatus) + hex("030000000a00"));
        add("stop", deed(HostileUnit::PersonStops));
        if (before % 4 != 0)
            continue;
        add("leave", deed(HostileUnit::Leave));
        add("busy", deed(HostileUnit::Busy) + "\x05");
        add("called-off", deed(HostileUnit::TransferIsCalledOff));
        add("short", deed(HostileUnit::CutShort) + "\x02");
        add("events", deed(HostileUnit::BreakEvents) + "\x01\x01");
    }
}

void addConfigurationFiles(Corpora& corpora)
{
    QFile shipped(QStringLiteral(SHIPPED_LOGGING_INI));
    if (shipped.open(QIODevice::ReadOnly))
        corpora.add("logging", "shipped", shipped.readAll());
    corpora.failed = corpora.failed || !shipped.isOpen();
    corpora.add("logging", "loggers",
                "; levels\r\n[DEFAULT]\r\nlevel=TRACE\r\nconsole=on\r\ncolors=on\r\n\r\n"
                "[DfuDevice]\r\nlevel = DEBUG\r\nfile = dfu.log\r\ntruncate = -1\r\n"
                "[main]\r\nlevel=off\r\nconsole=off\r\n");
    corpora.add("logging", "paths",
                "[default]\nfile=/etc/passwd\n[x]\nfile=../../x\ntruncate=none\n[X]\nFILE=\n");
    corpora.add("logging", "no-section", "level=INFO\n");
    corpora.add("logging", "open-section", "[default\nlevel=INFO\n");
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_seeds DIRECTORY\n");
        return 2;
    }
    Corpora corpora(QString::fromLocal8Bit(argv[1]));
    addBundles(corpora);
    addDescriptors(corpora);
    addAnswers(corpora);
    addUpdates(corpora);
    addConfigurationFiles(corpora);
    return corpora.failed ? 1 : 0;
}
