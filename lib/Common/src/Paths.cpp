// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Paths.h"

#include "BuildFacts.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace Common {

QString Paths::applicationDirectory()
{
    return QDir(QCoreApplication::applicationDirPath()).absolutePath();
}

QString Paths::applicationSubdirectory(const QString& subdirectory)
{
    return fileInDirectory(applicationDirectory(), subdirectory);
}

QString Paths::resourceDirectory()
{
    return applicationSubdirectory(QStringLiteral("Resources"));
}

QString Paths::resourceSubdirectory(const QString& subdirectory)
{
    return fileInDirectory(resourceDirectory(), subdirectory);
}

QString Paths::settingsDirectory()
{
    return resourceSubdirectory(QStringLiteral("Settings"));
}

QString Paths::settingsSubdirectory(const QString& subdirectory)
{
    return fileInDirectory(settingsDirectory(), subdirectory);
}

QString Paths::settingsFilename(const QString& filename)
{
    return fileInDirectory(settingsDirectory(), filename);
}

QString Paths::dataDirectory()
{
    return QStandardPaths::standardLocations(QStandardPaths::AppLocalDataLocation).value(0);
}

QString Paths::dataSubdirectory(const QString& subdirectory)
{
    return fileInDirectory(dataDirectory(), subdirectory);
}

QString Paths::dataFilename(const QString& filename, const QString& subdirectory)
{
    return fileInDirectory(dataSubdirectory(subdirectory), filename);
}

QString Paths::userSettingsDirectory()
{
    return dataSubdirectory(QStringLiteral("Settings"));
}

QString Paths::userSettingsSubdirectory(const QString& subdirectory)
{
    return fileInDirectory(userSettingsDirectory(), subdirectory);
}

QString Paths::userSettingsFilename(const QString& filename)
{
    return fileInDirectory(userSettingsDirectory(), filename);
}

QString Paths::logDirectory()
{
    return dataSubdirectory(QStringLiteral("Logs"));
}

QString Paths::sourcesDirectory()
{
    return QString::fromUtf8(BuildFacts::sourcesDirectory);
}

QString Paths::urlFromAbsoluteFilePath(const QString& absoluteFilePath)
{
    return QUrl::fromLocalFile(absoluteFilePath).toString();
}

QString Paths::absoluteFilePathFromURL(const QUrl& url)
{
    return url.toLocalFile();
}

QString Paths::pathWithNativeSeparators(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

QString Paths::fileInDirectory(const QString& directory, const QString& filename)
{
    return QDir(directory).absoluteFilePath(filename);
}

QString Paths::relativePath(const QString& directory, const QString& path)
{
    return QDir(directory).relativeFilePath(path);
}

QStringList Paths::filesInDirectoryTree(const QString& rootDirectory)
{
    QStringList files;
    // An empty path would mean the current directory.
    if (rootDirectory.isEmpty())
        return files;
    QDirIterator iterator(rootDirectory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (iterator.hasNext())
        files.append(iterator.next());
    return files;
}

bool Paths::allURLsPointToLocalFiles(const QList<QUrl>& urls)
{
    return std::all_of(urls.begin(), urls.end(),
                       [](const QUrl& url) { return QFileInfo(url.toLocalFile()).isFile(); });
}

} // namespace Common
