// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QFile>

namespace QsLogging {

/// Opens a text file for appending, without a buffer, and creates it when absent. The file can be
/// renamed while it is open, on every platform.
/// @return false if that fails; the file is then closed
bool openLogFile(QFile& file);

} // namespace QsLogging
