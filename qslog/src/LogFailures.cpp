// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/LogFailures.h"

namespace QsLogging {

LogFailures& LogFailures::instance()
{
    static LogFailures& instance = *new LogFailures;
    return instance;
}

void LogFailures::add(int files)
{
    m_files += files;
    emit changed();
}

} // namespace QsLogging
