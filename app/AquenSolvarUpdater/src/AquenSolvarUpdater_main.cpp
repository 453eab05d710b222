#include "Common/BuildVersion.h"
#include "Common/Logging/LoggingStartup.h"
#include "Common/Paths.h"
#include "qslog/DebugOutputDestination.h"
#include "qslog/Log.h"
#include "shell/InstanceGuard.h"
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

const char usage[] = "Usage: AquenSolvarUpdater [options]\n"
                     "Updates the firmware of washing and curing units attached by USB.\n"
                     "\n"
                     "Options:\n"
                     "  -h, --help     Show this text.\n"
                     "  -v, --version  Show the version of this program.\n";

void defineOptions(QCommandLineParser& parser)
{
    // The framework's own options have words after one dash; "-reverse" is no "-v".
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addHelpOption();
    parser.addVersionOption();
}

// The options that are answered without a display, and so before the application object exists.
std::optional<int> answerOptions(int argc, char** argv)
{
    QCommandLineParser parser;
    defineOptions(parser);
    // Options of the framework itself are unknown here and not an error yet.
    parser.parse(argumentsOf(argc, argv));
    QTextStream out(stdout);
    if (parser.isSet(QStringLiteral("help")))
        out << usage;
    else if (parser.isSet(QStringLiteral("version")))
        out << "AquenSolvarUpdater " << Common::BuildVersion::majorMinorRevisionString() << '\n';
    else
        return std::nullopt;
    return 0;
}

// What the framework has left of the command line must be nothing.
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
    QTextStream(stderr) << error << '\n' << usage;
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
    QsLogging::surviveClosedDebugOutput();
    if (const std::optional<int> status = answerOptions(argc, argv))
        return *status;
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    // By this name a Wayland desktop finds the menu entry and the icon that belong to the window.
    QGuiApplication::setDesktopFileName(QStringLiteral("quillon.aquen_solvar.updater"));
    QApplication application(argc, argv);
    if (!checkCommandLine())
        return usageError;
    auto engine = std::make_unique<QQmlApplicationEngine>();
    InitializeApplication(QStringLiteral("QuillonFirmwareUpdater"));
    Q_INIT_RESOURCE(UnderscoreQML);
    AquenSolvar::installTranslation(application,
                                    AquenSolvar::translationFor(QLocale::system().uiLanguages()));
    AquenSolvar::InstanceGuard guard(Common::Paths::dataDirectory());
    guard.checkIsFirst();
    // What failed to load has been told by the engine; the program runs on until it is closed.
    AquenSolvar::loadUserInterface(*engine);
    QLOG_INFO() << "Initialized application!";
    const int status = QApplication::exec();
    engine.reset();
    AquenSolvar::Device::DetachedJob::endAll();
    // Devices are deleted later; their USB handles must close before static objects go.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}
