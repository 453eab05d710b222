// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/LogFile.h"

namespace QsLogging {

bool openLogFile(QFile& file)
{
    return file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
}

} // namespace QsLogging
