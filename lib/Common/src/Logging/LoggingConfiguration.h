// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QString>

namespace Common {

/// Applies a Logging.ini to the loggers. The section "default" (in any case) sets the level and the
/// destinations that loggers created from now on start with; every section not spelled exactly
/// "default" is also the logger of that exact name. Keys: level (TRACE to FATAL in upper case,
/// anything else is Off), console and colors ("on"), file (relative to @p logDirectory), truncate
/// (bytes). The file of any section joins the default destinations. Without @p allowDebugLevels, a
/// section's logger gets Info instead of Trace and Debug; the default level is not limited. Loads
/// are cumulative: nothing is reset before a load.
///
/// @return false, with nothing changed, if the file is missing, unreadable or invalid. Truncate
/// sizes are reported through qDebug(). Main thread.
bool loadLoggingConfiguration(const QString& iniPath, const QString& logDirectory,
                              bool allowDebugLevels);

} // namespace Common
