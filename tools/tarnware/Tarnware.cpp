#include "tarnware/Tarnware.h"

#include "firmware/FirmwareBundle.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using AquenSolvar::Device::FirmwareBundle;
using AquenSolvar::Device::firmwareReadResultText;
using AquenSolvar::Device::packFirmwareBundle;
using AquenSolvar::Device::parseFirmwareBundle;
using AquenSolvar::Device::readFirmwareBundle;

namespace {

// The updater refuses an image that does not stay below this, and an empty one.
constexpr int imageSizeLimit = 163840;

constexpr char usage[] = R"(Usage:
  tarnware pack --version N IMAGE OUT   make a firmware bundle from a raw flash image
  tarnware show FILE...                 print version, size and SHA-256 of each bundle's image
  tarnware unpack FILE OUT              write a bundle's raw flash image
  tarnware --help                       print this text

N is a whole number from 1 on; the updater never chooses a lower version. An image has 1 to 163839
bytes. OUT appears only when it is complete; an existing file is replaced.

Exit status: 0 done, 1 a file is missing, unreadable, damaged or unsuitable, 2 wrong usage.
)";

} // namespace

Tarnware::Tarnware(QTextStream& output, QTextStream& errors)
    : m_output(output)
    , m_errors(errors)
{
}

Tarnware::Status Tarnware::run(const QStringList& arguments)
{
    const QString command = arguments.value(0);
    const QStringList rest = arguments.mid(1);
    if (command == QLatin1String("--help") || command == QLatin1String("-h")) {
        m_output << usage;
        return Success;
    }
    if (command == QLatin1String("pack"))
        return pack(rest);
    if (command == QLatin1String("show"))
        return show(rest);
    if (command == QLatin1String("unpack"))
        return unpack(rest);
    return badUsage(command.isEmpty() ? QStringLiteral("no command given")
                                      : QStringLiteral("unknown command \"%1\"").arg(command));
}

Tarnware::Status Tarnware::pack(const QStringList& arguments)
{
    QStringList files = arguments;
    const int option = files.indexOf(QStringLiteral("--version"));
    if (option < 0 || files.size() != 4)
        return badUsage(QStringLiteral("pack takes --version N, an image and an output file"));
    bool isNumber = false;
    const qint32 version = files.value(option + 1).toInt(&isNumber);
    if (!isNumber || version < 1)
        return badUsage(QStringLiteral("the version is not a whole number from 1 to 2147483647"));
    files.erase(files.begin() + option, files.begin() + option + 2);

    QFile image(files.at(0));
    if (!QFileInfo(image).isFile() || !image.open(QIODevice::ReadOnly))
        return complain(BadFile, QStringLiteral("%1: cannot be read").arg(files.at(0)));
    const QByteArray contents = image.read(imageSizeLimit);
    if (image.error() != QFileDevice::NoError)
        return complain(BadFile, files.at(0) + QStringLiteral(": ") + image.errorString());
    if (contents.isEmpty() || contents.size() >= imageSizeLimit)
        return complain(BadFile, QStringLiteral("%1: an image has 1 to %2 bytes")
                                     .arg(files.at(0))
                                     .arg(imageSizeLimit - 1));

    const QByteArray bundle = packFirmwareBundle(version, contents);
    FirmwareBundle check;
    if (parseFirmwareBundle(bundle, check) != 0 || check.data != contents)
        return complain(BadFile, QStringLiteral("the bundle does not read back"));
    return writeFile(files.at(1), bundle);
}

Tarnware::Status Tarnware::show(const QStringList& paths)
{
    if (paths.isEmpty())
        return badUsage(QStringLiteral("show takes one or more bundle files"));
    Status status = Success;
    for (const QString& path : paths) {
        if (showOne(path) != Success)
            status = BadFile;
    }
    return status;
}

Tarnware::Status Tarnware::showOne(const QString& path)
{
    FirmwareBundle bundle;
    const int result = readFirmwareBundle(path, bundle);
    if (result != 0)
        return complain(BadFile, path + QStringLiteral(": ") + firmwareReadResultText(result));
    const QByteArray digest = QCryptographicHash::hash(bundle.data, QCryptographicHash::Sha256);
    m_output << path << ": version " << bundle.version << ", " << bundle.data.size()
             << " bytes, SHA-256 " << digest.toHex() << '\n';
    if (bundle.version < 1)
        m_errors << "tarnware: " << path << ": the updater never chooses a version below 1\n";
    if (bundle.data.isEmpty() || bundle.data.size() >= imageSizeLimit)
        m_errors << "tarnware: " << path << ": the updater takes an image of 1 to "
                 << imageSizeLimit - 1 << " bytes\n";
    return Success;
}

Tarnware::Status Tarnware::unpack(const QStringList& arguments)
{
    if (arguments.size() != 2)
        return badUsage(QStringLiteral("unpack takes a bundle file and an output file"));
    FirmwareBundle bundle;
    const int result = readFirmwareBundle(arguments.at(0), bundle);
    if (result != 0)
        return complain(BadFile,
                        arguments.at(0) + QStringLiteral(": ") + firmwareReadResultText(result));
    return writeFile(arguments.at(1), bundle.data);
}

Tarnware::Status Tarnware::writeFile(const QString& path, const QByteArray& contents)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() ||
        !file.commit())
        return complain(BadFile, path + QStringLiteral(": ") + file.errorString());
    return Success;
}

Tarnware::Status Tarnware::complain(Status status, const QString& text)
{
    m_errors << "tarnware: " << text << '\n';
    return status;
}

Tarnware::Status Tarnware::badUsage(const QString& text)
{
    complain(BadUsage, text);
    m_errors << usage;
    return BadUsage;
}
