// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QStringList>

namespace Common {

/// The last @p count lines that match @p pattern in a log file and the one that it replaced
/// (".old"), oldest first, without colours. Looks at the last MiB of each; one that cannot be read
/// counts as empty. Any thread.
QStringList lastLogLines(const QString& logFile, const QString& pattern, int count);

} // namespace Common
