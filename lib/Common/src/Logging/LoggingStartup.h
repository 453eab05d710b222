// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QString>

namespace Common {

/// The files that logging starts from.
struct LoggingFiles
{
    QString logDirectory;       ///< for log files; created if missing
    QString applicationIniPath; ///< shipped with the program, read first
    QString userIniPath;        ///< the user's own, read second: it overrides

    /// This program's files. Depends on the organisation and application names: set them first.
    static LoggingFiles standard();
};

/// Starts logging: creates the log directory and loads both configuration files, either of which
/// may be missing. With @p allowDebugLevels, watches the user's file and loads it again on changes
/// while the application object lives; a second call replaces the watch. Progress is reported
/// through qDebug(). Main thread, after the application object was created and before the first log
/// line.
void startLogging(const LoggingFiles& files, bool allowDebugLevels);

/// As above, from this program's files. Debug levels are allowed except in a release.
void startLogging();

} // namespace Common
