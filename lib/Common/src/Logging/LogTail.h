// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QStringList>

namespace Common {

/// The last @p count lines of a log file that match @p pattern, oldest first, without colours.
/// Looks at the last MiB of the file. Empty if it cannot be read. Any thread.
QStringList lastLogLines(const QString& logFile, const QString& pattern, int count);

} // namespace Common
