// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/BuildVersion.h"
#include "Common/ConsoleOutput.h"
#include "Common/LibrarySearch.h"
#include "Common/Logging/LoggingStartup.h"
#include "Common/Paths.h"
#include "qslog/DebugOutputDestination.h"
#include "qslog/Log.h"
#include "shell/InstanceGuard.h"
#include "shell/Renderer.h"
#include "shell/Translation.h"
#include "shell/UserInterface.h"
#include "update/DetachedJob.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QTextStream>

#include <memory>
#include <optional>

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

// Handles the options that need no display, before the application object exists.
std::optional<int> handleEarlyOptions(int argc, char** argv)
{
    QCommandLineParser parser;
    defineOptions(parser);
    // Qt's own options are unknown here, so that errors do not count yet.
    parser.parse(argumentsOf(argc, argv));
    const bool asksForHelp = parser.isSet(QStringLiteral("help"));
    if (!asksForHelp && !parser.isSet(QStringLiteral("version")))
        return std::nullopt;
    const Common::ConsoleOutput console;
    QTextStream out(stdout);
    if (asksForHelp) {
        const QCoreApplication application(argc, argv); // names the program in the text
        out << parser.helpText();
    } else {
        out << "AquenSolvarUpdater " << Common::BuildVersion::majorMinorRevisionString() << '\n';
    }
    return 0;
}

// Refuses every argument that Qt has not taken.
bool checkCommandLine()
{
    QCommandLineParser parser;
    defineOptions(parser);
    QString error;
    if (!parser.parse(QCoreApplication::arguments()))
        error = parser.errorText();
    else if (!parser.positionalArguments().isEmpty())
        error = QStringLiteral("Unexpected argument '%1'.")
                    .arg(parser.positionalArguments().constFirst());
    if (error.isEmpty())
        return true;
    const Common::ConsoleOutput console;
    QTextStream(stderr) << error << '\n' << parser.helpText();
    return false;
}

} // namespace

static void InitializeApplication(const QString& applicationName)
{
    QCoreApplication::setOrganizationName(QStringLiteral("Quillon"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("quillon"));
    QCoreApplication::setApplicationName(applicationName);
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0"));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    Common::startLogging();
    QLOG_INFO() << "Initialized" << QCoreApplication::applicationName()
                << QCoreApplication::applicationVersion();
    QLOG_INFO() << "Build" << Common::BuildVersion::versionNumberString()
                << Common::BuildVersion::buildGitCommit();
}

int main(int argc, char** argv)
{
    Common::restrictLibrarySearch();
    QsLogging::surviveClosedDebugOutput();
    if (const std::optional<int> status = handleEarlyOptions(argc, argv))
        return *status;
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    // A Wayland desktop finds the window's menu entry and icon by this name.
    QGuiApplication::setDesktopFileName(QStringLiteral("quillon.aquen_solvar.updater"));
    QApplication application(argc, argv);
    if (!checkCommandLine())
        return usageError;
    auto engine = std::make_unique<QQmlApplicationEngine>();
    InitializeApplication(QStringLiteral("QuillonFirmwareUpdater"));
    Q_INIT_RESOURCE(UnderscoreQML);
    AquenSolvar::chooseRenderer();
    AquenSolvar::installTranslation(application,
                                    AquenSolvar::translationFor(QLocale::system().uiLanguages()));
    AquenSolvar::InstanceGuard guard(Common::Paths::dataDirectory());
    guard.checkIsFirst();
    // The engine reports what fails to load. The program then runs until it is closed.
    AquenSolvar::loadUserInterface(*engine);
    QLOG_INFO() << "Initialized application!";
    const int status = QApplication::exec();
    engine.reset();
    AquenSolvar::Device::DetachedJob::endAll();
    // Devices are deleted later; their USB handles must close before static objects are destroyed.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}
