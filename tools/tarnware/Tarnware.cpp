// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tarnware/Tarnware.h"

#include "Common/BuildVersion.h"
#include "firmware/FirmwareBundle.h"
#include "firmware/ImageSize.h"
#include "tarnware/FileAccess.h"
#include "tarnware/ImageFormat.h"

#include <QCommandLineParser>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

using namespace AquenSolvar::Device;

namespace {

constexpr char description[] = R"(Creates and reads firmware bundles.

Commands; "COMMAND --help" shows their arguments:
  pack    Create a bundle from a raw flash image.
  show    Print version, size and SHA-256 of each bundle's image.
  unpack  Write the raw flash image of a bundle.

Exit status: 0 done, 1 a file is missing, unreadable, damaged or unsuitable, or output is lost,
2 wrong usage.)";

const QString outDescription = QStringLiteral(
    "The file to write, or - for standard output. It appears only when it is complete, and "
    "replaces an existing file.");

FirmwareBundle readBundle(const QString& name)
{
    FirmwareBundle bundle;
    const int result = parseFirmwareBundle(readInput(name, largestFirmwareBundle), bundle);
    if (result != FirmwareRead)
        throw FileError(inputName(name), firmwareReadResultText(result));
    return bundle;
}

QByteArray readImage(const QString& name)
{
    QByteArray image = readInput(name, largestFirmwareBundle);
    const QString format = formatOtherThanRaw(image);
    if (!format.isEmpty())
        throw FileError(inputName(name),
                        QStringLiteral("is %1 and not a raw flash image").arg(format));
    if (image.isEmpty() || image.size() >= imageSizeBound)
        throw FileError(inputName(name),
                        QStringLiteral("an image has 1 to %1 bytes").arg(imageSizeBound - 1));
    return image;
}

} // namespace

Tarnware::Tarnware(QTextStream& errors)
    : m_errors(errors)
{
}

Tarnware::Status Tarnware::run(const QStringList& arguments)
{
    try {
        return runCommand(arguments);
    } catch (const FileError& error) {
        return complain(BadFile, QString::fromUtf8(error.what()));
    }
}

Tarnware::Status Tarnware::runCommand(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(description));
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const QCommandLineOption version(QStringLiteral("version"),
                                     QStringLiteral("Show the version of this program."));
    parser.addOption(version);
    parser.addPositionalArgument(QStringLiteral("COMMAND"), QStringLiteral("One of the above."),
                                 QStringLiteral("COMMAND [argument]..."));
    QStringList words;
    if (const std::optional<Status> status = parse(parser, arguments, words))
        return *status;
    if (parser.isSet(version)) {
        if (!words.isEmpty())
            return badUsage(parser, QStringLiteral("the version of a bundle follows \"pack\""));
        writeStandardOutput("tarnware " +
                            Common::BuildVersion::majorMinorRevisionString().toUtf8() + '\n');
        return Success;
    }
    if (words.isEmpty())
        return badUsage(parser, QStringLiteral("no command given"));

    const QString command = words.first();
    words.prepend(arguments.first());
    QCommandLineParser commandParser;
    if (command == QLatin1String("pack"))
        return pack(commandParser, words);
    if (command == QLatin1String("show"))
        return show(commandParser, words);
    if (command == QLatin1String("unpack"))
        return unpack(commandParser, words);
    return badUsage(parser, QStringLiteral("unknown command \"%1\"").arg(command));
}

// Fills in the positional arguments. The command is over if this returns a status.
std::optional<Tarnware::Status> Tarnware::parse(QCommandLineParser& parser,
                                                const QStringList& arguments, QStringList& files)
{
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this text."));
    parser.addOption(help);
    if (!parser.parse(arguments))
        return badUsage(parser, parser.errorText());
    files = parser.positionalArguments();
    if (!parser.isSet(help))
        return std::nullopt;
    writeStandardOutput(parser.helpText().toLocal8Bit());
    return Success;
}

Tarnware::Status Tarnware::pack(QCommandLineParser& parser, const QStringList& arguments)
{
    const QCommandLineOption version(
        QStringLiteral("version"),
        QStringLiteral("Required: a whole number from 1 on. The updater takes the highest."),
        QStringLiteral("N"));
    parser.addOption(version);
    parser.addPositionalArgument(QStringLiteral("pack"), QStringLiteral("Create a bundle."));
    parser.addPositionalArgument(
        QStringLiteral("IMAGE"),
        QStringLiteral("A raw flash image of 1 to %1 bytes, or - for standard input.")
            .arg(imageSizeBound - 1));
    parser.addPositionalArgument(QStringLiteral("OUT"), outDescription);
    QStringList words;
    if (const std::optional<Status> status = parse(parser, arguments, words))
        return *status;
    if (!parser.isSet(version) || words.size() != 3)
        return badUsage(parser,
                        QStringLiteral("pack takes --version N, an image and an output file"));
    bool isNumber = false;
    const qint32 number = parser.value(version).toInt(&isNumber);
    if (!isNumber || number < 1)
        return badUsage(parser,
                        QStringLiteral("the version is not a whole number from 1 to 2147483647"));

    const QByteArray image = readImage(words.at(1));
    const QByteArray bundle = packFirmwareBundle(number, image);
    FirmwareBundle check;
    if (parseFirmwareBundle(bundle, check) != FirmwareRead || check.data != image)
        return complain(BadFile, QStringLiteral("the bundle does not read back"));
    writeOutput(words.at(2), bundle, words.at(1));
    warnOfName(words.at(2));
    return Success;
}

Tarnware::Status Tarnware::show(QCommandLineParser& parser, const QStringList& arguments)
{
    parser.addPositionalArgument(
        QStringLiteral("show"),
        QStringLiteral("Print version, size and SHA-256 of each bundle's image."));
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("A bundle, or - for standard input."),
                                 QStringLiteral("FILE..."));
    QStringList words;
    if (const std::optional<Status> status = parse(parser, arguments, words))
        return *status;
    if (words.size() < 2)
        return badUsage(parser, QStringLiteral("show takes one or more bundle files"));
    Status status = Success;
    const QStringList names = words.mid(1);
    for (const QString& name : names) {
        if (showOne(name) != Success)
            status = BadFile;
    }
    return status;
}

Tarnware::Status Tarnware::showOne(const QString& name)
{
    FirmwareBundle bundle;
    try {
        bundle = readBundle(name);
    } catch (const FileError& error) {
        return complain(BadFile, QString::fromUtf8(error.what()));
    }
    const QByteArray digest = QCryptographicHash::hash(bundle.data, QCryptographicHash::Sha256);
    QString line;
    QTextStream(&line) << inputName(name) << ": version " << bundle.version << ", "
                       << bundle.data.size() << " bytes, SHA-256 " << digest.toHex() << '\n';
    writeStandardOutput(line.toLocal8Bit());
    warnOfName(name);
    if (bundle.version < 1)
        return complain(BadFile,
                        inputName(name) +
                            QStringLiteral(": the updater never chooses a version below 1"));
    if (bundle.data.isEmpty() || bundle.data.size() >= imageSizeBound)
        return complain(BadFile, inputName(name) +
                                     QStringLiteral(": the updater takes an image of 1 to %1 bytes")
                                         .arg(imageSizeBound - 1));
    return Success;
}

Tarnware::Status Tarnware::unpack(QCommandLineParser& parser, const QStringList& arguments)
{
    parser.addPositionalArgument(QStringLiteral("unpack"),
                                 QStringLiteral("Write the raw flash image of a bundle."));
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("A bundle, or - for standard input."));
    parser.addPositionalArgument(QStringLiteral("OUT"), outDescription);
    QStringList words;
    if (const std::optional<Status> status = parse(parser, arguments, words))
        return *status;
    if (words.size() != 3)
        return badUsage(parser, QStringLiteral("unpack takes a bundle file and an output file"));
    writeOutput(words.at(2), readBundle(words.at(1)).data, words.at(1));
    return Success;
}

// A warning only: the file may be renamed on its way to the updater.
void Tarnware::warnOfName(const QString& name)
{
    // The updater's name filters, one for each kind of unit.
    static const QStringList patterns = {QStringLiteral("aquen-v*.tarnware"),
                                         QStringLiteral("solvar-v*.tarnware")};
    const QString file = QFileInfo(name).fileName();
    if (!isStandardStream(name) && !QDir::match(patterns, file))
        m_errors << "tarnware: " << name << ": the updater reads only files named "
                 << patterns.join(QStringLiteral(" or ")) << '\n';
}

Tarnware::Status Tarnware::complain(Status status, const QString& text)
{
    m_errors << "tarnware: " << text << '\n';
    m_errors.flush();
    return status;
}

Tarnware::Status Tarnware::badUsage(const QCommandLineParser& parser, const QString& text)
{
    complain(BadUsage, text);
    m_errors << parser.helpText();
    return BadUsage;
}
