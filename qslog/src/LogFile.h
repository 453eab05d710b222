// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QFile>

namespace QsLogging {

/// Opens a text file for appending and creates it when absent. Buffered, so that a line and its end
/// reach the file at once: several processes write to it. The file can be renamed while it is open,
/// on every platform.
/// @return false if that fails; the file is then closed
bool openLogFile(QFile& file);

} // namespace QsLogging
