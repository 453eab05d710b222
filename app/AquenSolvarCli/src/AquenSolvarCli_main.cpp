// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/BuildVersion.h"
#include "Common/Console.h"
#include "Common/ConsoleOutput.h"
#include "Common/LibrarySearch.h"
#include "Common/Logging/LoggingStartup.h"
#include "cli/CommandLine.h"
#include "cli/Session.h"
#include "qslog/DebugOutputDestination.h"
#include "qslog/Log.h"
#include "update/DetachedJob.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextStream>
#include <QTimer>

int main(int argc, char** argv)
{
    using namespace AquenSolvar;
    Common::restrictLibrarySearch();
    const Common::ConsoleOutput output;
    QsLogging::surviveClosedDebugOutput();
    Common::watchForInterrupt();
    QCoreApplication application(argc, argv);
    // Those of the application: the same settings and log files.
    QCoreApplication::setOrganizationName(QStringLiteral("Quillon"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("quillon"));
    QCoreApplication::setApplicationName(QStringLiteral("QuillonFirmwareUpdater"));

    Cli::CommandLine commandLine;
    const QString fault = commandLine.parse(QCoreApplication::arguments());
    if (!fault.isEmpty()) {
        QTextStream(stderr) << "aquen-solvar-cli: " << fault << "\n\n" << commandLine.helpText();
        return int(Cli::Status::BadUsage);
    }
    if (commandLine.isSet("help") || commandLine.isSet("version")) {
        QTextStream(stdout) << (commandLine.isSet("help")
                                    ? commandLine.helpText()
                                    : QStringLiteral("aquen-solvar-cli %1\n")
                                          .arg(Common::BuildVersion::majorMinorRevisionString()));
        return int(Cli::Status::Done);
    }
    // Logging reports its start there, which is none of the user's concern.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    Common::startLogging();
    QLOG_INFO() << "Command line:" << QCoreApplication::arguments().mid(1);
    Cli::Session session(commandLine);
    QTimer::singleShot(0, &session, &Cli::Session::start);
    const int status = QCoreApplication::exec();
    Device::DetachedJob::endAll();
    // Devices are deleted later; their USB handles must close before static objects are destroyed.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return status;
}
