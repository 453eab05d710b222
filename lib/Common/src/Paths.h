// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace Common {

/// The locations of the program's files, for QML (singleton Paths) and for native code. Results are
/// absolute paths with forward slashes unless stated. Joining a directory with a name appends a
/// relative name; an absolute name replaces the directory. Creates no directories. Stateless; any
/// thread.
class Paths : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The directory that holds the running executable.
    Q_INVOKABLE static QString applicationDirectory();
    Q_INVOKABLE static QString applicationSubdirectory(const QString& subdirectory);

    /// The read-only resources beside the executable: "Resources".
    Q_INVOKABLE static QString resourceDirectory();
    Q_INVOKABLE static QString resourceSubdirectory(const QString& subdirectory);

    /// The settings that ship with the program: "Settings" among the resources.
    Q_INVOKABLE static QString settingsDirectory();
    Q_INVOKABLE static QString settingsSubdirectory(const QString& subdirectory);
    Q_INVOKABLE static QString settingsFilename(const QString& filename);

    /// The user's own data: the first application-local location of the platform, which follows the
    /// organisation and application names. Empty when the platform has none; the functions built on
    /// it then resolve against the current directory.
    Q_INVOKABLE static QString dataDirectory();
    Q_INVOKABLE static QString dataSubdirectory(const QString& subdirectory);
    Q_INVOKABLE static QString dataFilename(const QString& filename, const QString& subdirectory);

    /// The user's settings: "Settings" in the data directory.
    Q_INVOKABLE static QString userSettingsDirectory();
    Q_INVOKABLE static QString userSettingsSubdirectory(const QString& subdirectory);
    Q_INVOKABLE static QString userSettingsFilename(const QString& filename);

    /// Where log files go: "Logs" in the data directory.
    Q_INVOKABLE static QString logDirectory();

    /// The source tree on the build machine. Packages set a conventional path instead
    /// (ASU_SOURCES_DIRECTORY), to be independent of that machine.
    Q_INVOKABLE static QString sourcesDirectory();

    /// The "file:" URL of a local path, as text.
    Q_INVOKABLE static QString urlFromAbsoluteFilePath(const QString& absoluteFilePath);

    /// The local path of a URL; empty for one that is not local.
    Q_INVOKABLE static QString absoluteFilePathFromURL(const QUrl& url);

    /// The path with the platform's own separators.
    Q_INVOKABLE static QString pathWithNativeSeparators(const QString& path);

    Q_INVOKABLE static QString fileInDirectory(const QString& directory, const QString& filename);

    /// The path relative to the directory.
    Q_INVOKABLE static QString relativePath(const QString& directory, const QString& path);

    /// Every regular file below the directory, including hidden ones, each as the root followed by
    /// its relative path, in no particular order. Links to directories are not followed. Empty if
    /// the directory is missing or empty.
    Q_INVOKABLE static QStringList filesInDirectoryTree(const QString& rootDirectory);

    /// Whether every URL names an existing regular file on this machine; true for an empty list.
    Q_INVOKABLE static bool allURLsPointToLocalFiles(const QList<QUrl>& urls);
};

} // namespace Common
