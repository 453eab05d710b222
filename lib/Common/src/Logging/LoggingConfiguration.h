#pragma once

#include <QString>

namespace Common {

/// Applies a Logging.ini to the loggers. The section "default" (in any case) sets the level and the
/// destinations that loggers made from now on start with; every section not spelled exactly
/// "default" is also the logger of that exact name. Keys: level (TRACE to FATAL in upper case,
/// anything else is Off), console and colors ("on"), file (relative to logDirectory), truncate
/// (bytes). The file of any section joins the default destinations. Without allowDebugLevels a
/// section's logger gets Info in place of Trace and Debug; the default level is never held back.
/// Loads add up: nothing is reset before a load.
///
/// False, with nothing changed, when the file is missing, unreadable or does not parse. Sizes that
/// were set or could not be read are told on the framework's debug channel. Main thread.
bool loadLoggingConfiguration(const QString& iniPath, const QString& logDirectory,
                              bool allowDebugLevels);

} // namespace Common
