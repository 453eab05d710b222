// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QtGlobal>

namespace QsLogging {

/// Severity of a log line and threshold of a logger, in ascending order of severity. A logger
/// writes a message whose level is not below its own.
enum class Level : qint32
{
    Trace = 0,
    Debug = 1,
    Info = 2,
    Warn = 3,
    Error = 4,
    Fatal = 5,
    Off = 6 ///< as a threshold: nothing is written
};

} // namespace QsLogging
