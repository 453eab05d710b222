// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/BuildVersion.h"
#include "Common/LibrarySearch.h"
#include "Common/Logging/LoggingStartup.h"
#include "Common/Paths.h"
#include "qslog/DebugOutputDestination.h"
#include "qslog/Log.h"
#include "shell/CommandLine.h"
#include "shell/InstanceGuard.h"
#include "shell/NoDisplay.h"
#include "shell/Renderer.h"
#include "shell/Translation.h"
#include "shell/UserInterface.h"
#include "update/DetachedJob.h"

#include <QApplication>
#include <QLocale>
#include <QQmlApplicationEngine>

#include <memory>
#include <optional>

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
    if (const std::optional<int> status = AquenSolvar::handleCommandLine(argc, argv))
        return *status;
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    // A Wayland desktop finds the window's menu entry and icon by this name.
    QGuiApplication::setDesktopFileName(QStringLiteral("quillon.aquen_solvar.updater"));
    const QtMessageHandler messageHandler =
        qInstallMessageHandler(&AquenSolvar::exitWithoutDisplay);
    QApplication application(argc, argv);
    qInstallMessageHandler(messageHandler);
    if (const std::optional<int> status = AquenSolvar::refuseRemainingArguments())
        return *status;
    auto engine = std::make_unique<QQmlApplicationEngine>();
    InitializeApplication(QStringLiteral("QuillonFirmwareUpdater"));
    Q_INIT_RESOURCE(UnderscoreQML);
    AquenSolvar::chooseRenderer();
    AquenSolvar::installTranslation(application,
                                    AquenSolvar::translationFor(QLocale::system().uiLanguages()));
    AquenSolvar::InstanceGuard guard(Common::Paths::dataDirectory());
    guard.checkIsFirst();
    // The engine reports what fails to load. The program then runs until it is closed.
    AquenSolvar::loadUserInterface(*engine, &guard);
    QLOG_INFO() << "Initialized application!";
    const int status = QApplication::exec();
    engine.reset();
    AquenSolvar::Device::DetachedJob::endAll();
    // Devices are deleted later; their USB handles must close before static objects are destroyed.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}
