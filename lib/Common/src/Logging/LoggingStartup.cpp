// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/LoggingStartup.h"

#include "Common/BuildType.h"
#include "Common/Logging/LoggingConfiguration.h"
#include "Common/Logging/SettingsFileWatcher.h"
#include "Common/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QtDebug>

namespace Common {

namespace {

// Log lines name units and paths: only the user who runs the program may read them.
void makePrivateDirectory(const QString& path)
{
    if (QFileInfo(path).isDir())
        return; // with the permissions that its owner gave it
    if (!QDir().mkpath(path))
        qDebug() << "Could not make directory for log files:" << path;
    else if (!QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        qDebug() << "Could not keep the directory for log files to its owner:" << path;
}

void watchUserSettings(const LoggingFiles& files, bool allowDebugLevels)
{
    static QPointer<SettingsFileWatcher> processWide;
    delete processWide;
    processWide = new SettingsFileWatcher(files.userIniPath, QCoreApplication::instance());
    QObject::connect(processWide, &SettingsFileWatcher::fileChanged, processWide,
                     [logDirectory = files.logDirectory, allowDebugLevels](const QString& path) {
                         qDebug() << "Reload logging configuration from" << path;
                         loadLoggingConfiguration(path, logDirectory, allowDebugLevels);
                     });
}

} // namespace

LoggingFiles LoggingFiles::standard()
{
    const QString name = QStringLiteral("Logging.ini");
    return {Paths::logDirectory(), Paths::settingsFilename(name),
            Paths::userSettingsFilename(name)};
}

void startLogging(const LoggingFiles& files, bool allowDebugLevels)
{
    makePrivateDirectory(QDir(files.logDirectory).absolutePath());
    for (const QString& path : {files.applicationIniPath, files.userIniPath}) {
        qDebug() << "Loading logging configuration from" << path;
        loadLoggingConfiguration(path, files.logDirectory, allowDebugLevels);
    }
    if (allowDebugLevels)
        watchUserSettings(files, allowDebugLevels);
}

void startLogging()
{
    startLogging(LoggingFiles::standard(), !BuildType::isRelease());
}

} // namespace Common
