#pragma once

#include <QString>

namespace Common {

/// The places that logging starts from.
struct LoggingFiles
{
    QString logDirectory;       ///< where log files go; made when missing
    QString applicationIniPath; ///< ships with the program, read first
    QString userIniPath;        ///< the user's own, read second, so that it overrides

    /// This program's places. They follow the organisation and application names, so those are set
    /// first.
    static LoggingFiles standard();
};

/// Starts logging: makes the log directory and loads both configuration files, either of which may
/// be missing. With allowDebugLevels the user's file is watched and loaded again when it changes,
/// as long as the application object lives; a second call replaces the watch. What it does is told
/// on the framework's debug channel. Main thread, after the application object was made and before
/// anything else logs.
void startLogging(const LoggingFiles& files, bool allowDebugLevels);

/// As above, from this program's places, with debug levels allowed in every build but a release.
void startLogging();

} // namespace Common
