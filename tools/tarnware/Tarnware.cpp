// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tarnware/Tarnware.h"

#include "firmware/FirmwareBundle.h"
#include "firmware/ImageSize.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

using AquenSolvar::Device::FirmwareBundle;
using AquenSolvar::Device::firmwareReadResultText;
using AquenSolvar::Device::imageSizeBound;
using AquenSolvar::Device::packFirmwareBundle;
using AquenSolvar::Device::parseFirmwareBundle;
using AquenSolvar::Device::readFirmwareBundle;

namespace {

constexpr char description[] = R"(Creates and reads firmware bundles.

Commands:
  pack --version N IMAGE OUT  Create a bundle from a raw flash image.
  show FILE...                Print version, size and SHA-256 of each bundle's image.
  unpack FILE OUT             Write the raw flash image of a bundle.

OUT appears only when it is complete; an existing file is replaced. Exit status: 0 done, 1 a file is
missing, unreadable, damaged or unsuitable, 2 wrong usage.)";

} // namespace

Tarnware::Tarnware(QTextStream& output, QTextStream& errors)
    : m_help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this text."))
    , m_version(
          QStringLiteral("version"),
          QStringLiteral("With pack: a whole number from 1 on. The updater takes the highest."),
          QStringLiteral("N"))
    , m_output(output)
    , m_errors(errors)
{
    m_parser.setApplicationDescription(QString::fromLatin1(description));
    m_parser.addOptions({m_help, m_version});
    m_parser.addPositionalArgument(QStringLiteral("COMMAND"), QStringLiteral("One of the above."));
    m_parser.addPositionalArgument(
        QStringLiteral("FILE"),
        QStringLiteral("An image has 1 to %1 bytes.").arg(imageSizeBound - 1),
        QStringLiteral("FILE..."));
}

Tarnware::Status Tarnware::run(const QStringList& arguments)
{
    if (!m_parser.parse(arguments))
        return badUsage(m_parser.errorText());
    if (m_parser.isSet(m_help)) {
        m_output << m_parser.helpText();
        return Success;
    }
    QStringList files = m_parser.positionalArguments();
    if (files.isEmpty())
        return badUsage(QStringLiteral("no command given"));
    const QString command = files.takeFirst();
    if (command == QLatin1String("pack"))
        return pack(files);
    if (m_parser.isSet(m_version))
        return badUsage(QStringLiteral("only pack takes --version"));
    if (command == QLatin1String("show"))
        return show(files);
    if (command == QLatin1String("unpack"))
        return unpack(files);
    return badUsage(QStringLiteral("unknown command \"%1\"").arg(command));
}

Tarnware::Status Tarnware::pack(const QStringList& files)
{
    if (!m_parser.isSet(m_version) || files.size() != 2)
        return badUsage(QStringLiteral("pack takes --version N, an image and an output file"));
    bool isNumber = false;
    const qint32 version = m_parser.value(m_version).toInt(&isNumber);
    if (!isNumber || version < 1)
        return badUsage(QStringLiteral("the version is not a whole number from 1 to 2147483647"));

    QFile image(files.at(0));
    if (!QFileInfo(image).isFile() || !image.open(QIODevice::ReadOnly))
        return complain(BadFile, QStringLiteral("%1: cannot be read").arg(files.at(0)));
    const QByteArray contents = image.read(imageSizeBound);
    if (image.error() != QFileDevice::NoError)
        return complain(BadFile, files.at(0) + QStringLiteral(": ") + image.errorString());
    if (contents.isEmpty() || contents.size() >= imageSizeBound)
        return complain(BadFile, QStringLiteral("%1: an image has 1 to %2 bytes")
                                     .arg(files.at(0))
                                     .arg(imageSizeBound - 1));

    const QByteArray bundle = packFirmwareBundle(version, contents);
    FirmwareBundle check;
    if (parseFirmwareBundle(bundle, check) != 0 || check.data != contents)
        return complain(BadFile, QStringLiteral("the bundle does not read back"));
    return writeFile(files.at(1), bundle);
}

Tarnware::Status Tarnware::show(const QStringList& files)
{
    if (files.isEmpty())
        return badUsage(QStringLiteral("show takes one or more bundle files"));
    Status status = Success;
    for (const QString& file : files) {
        if (showOne(file) != Success)
            status = BadFile;
    }
    return status;
}

Tarnware::Status Tarnware::showOne(const QString& file)
{
    FirmwareBundle bundle;
    const int result = readFirmwareBundle(file, bundle);
    if (result != 0)
        return complain(BadFile, file + QStringLiteral(": ") + firmwareReadResultText(result));
    const QByteArray digest = QCryptographicHash::hash(bundle.data, QCryptographicHash::Sha256);
    m_output << file << ": version " << bundle.version << ", " << bundle.data.size()
             << " bytes, SHA-256 " << digest.toHex() << '\n';
    if (bundle.version < 1)
        m_errors << "tarnware: " << file << ": the updater never chooses a version below 1\n";
    if (bundle.data.isEmpty() || bundle.data.size() >= imageSizeBound)
        m_errors << "tarnware: " << file << ": the updater takes an image of 1 to "
                 << imageSizeBound - 1 << " bytes\n";
    return Success;
}

Tarnware::Status Tarnware::unpack(const QStringList& files)
{
    if (files.size() != 2)
        return badUsage(QStringLiteral("unpack takes a bundle file and an output file"));
    FirmwareBundle bundle;
    const int result = readFirmwareBundle(files.at(0), bundle);
    if (result != 0)
        return complain(BadFile,
                        files.at(0) + QStringLiteral(": ") + firmwareReadResultText(result));
    return writeFile(files.at(1), bundle.data);
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
    m_errors << m_parser.helpText();
    return BadUsage;
}
