// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/CommandLine.h"

#include "Common/BuildVersion.h"
#include "Common/ConsoleOutput.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

namespace AquenSolvar {

namespace {

constexpr int usageError = 2;

QStringList argumentsOf(int argc, char** argv)
{
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments << QString::fromLocal8Bit(argv[index]);
    return arguments;
}

void defineOptions(QCommandLineParser& parser)
{
    // Qt's own options are words after one dash: "-reverse" does not contain "-v".
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(
        QStringLiteral("Updates the firmware of washing and curing units attached by USB."));
    parser.addOptions(
        {{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this text.")},
         {{QStringLiteral("v"), QStringLiteral("version")},
          QStringLiteral("Show the version of this program.")}});
}

// The options that Qt's application object and its platforms take and remove.
void defineQtOptions(QCommandLineParser& parser)
{
    for (const char* flag : {"dograb", "nograb", "reverse", "sync", "widgetcount"})
        parser.addOption(QCommandLineOption(QString::fromLatin1(flag)));
    for (const char* option :
         {"display", "geometry", "icon", "name", "platform", "platformpluginpath", "platformtheme",
          "plugin", "qmljsdebugger", "qwindowgeometry", "qwindowicon", "qwindowtitle", "session",
          "style", "stylesheet", "title", "visual"})
        parser.addOption({QString::fromLatin1(option), QString(), QStringLiteral("value")});
}

// What is wrong with the arguments; empty if nothing is.
QString errorIn(const QStringList& arguments, QCommandLineParser& parser)
{
    if (!parser.parse(arguments))
        return parser.errorText();
    if (parser.positionalArguments().isEmpty())
        return {};
    return QStringLiteral("Unexpected argument '%1'.")
        .arg(parser.positionalArguments().constFirst());
}

// Needs an application object, which names the program in the help text.
int reportUsageError(const QString& error)
{
    QCommandLineParser parser; // without Qt's options
    defineOptions(parser);
    const Common::ConsoleOutput console;
    QTextStream(stderr) << error << '\n' << parser.helpText();
    return usageError;
}

} // namespace

std::optional<int> handleCommandLine(int argc, char** argv)
{
    const QStringList arguments = argumentsOf(argc, argv);
    QCommandLineParser parser;
    defineOptions(parser);
    parser.parse(arguments); // an option for help counts beside errors
    if (parser.isSet(QStringLiteral("help"))) {
        const QCoreApplication application(argc, argv);
        const Common::ConsoleOutput console;
        QTextStream(stdout) << parser.helpText();
        return 0;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        const Common::ConsoleOutput console;
        QTextStream(stdout) << "AquenSolvarUpdater "
                            << Common::BuildVersion::majorMinorRevisionString() << '\n';
        return 0;
    }
    defineQtOptions(parser);
    const QString error = errorIn(arguments, parser);
    if (error.isEmpty())
        return std::nullopt;
    // Not before: the first application object takes arguments away from the second.
    const QCoreApplication application(argc, argv);
    return reportUsageError(error);
}

std::optional<int> refuseRemainingArguments()
{
    QCommandLineParser parser;
    defineOptions(parser);
    const QString error = errorIn(QCoreApplication::arguments(), parser);
    if (error.isEmpty())
        return std::nullopt;
    return reportUsageError(error);
}

} // namespace AquenSolvar
