#pragma once

#include <QString>

namespace QsLogging {

/// Severity of a log line and threshold of a logger. The numeric order is the order of severity; a
/// logger writes a message whose level is not below its own.
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

/// The level's name between ANSI colour escapes, as it stands at the start of a line. Off gives the
/// empty text; a value outside the enumeration gives the text of Info. Any thread.
QString levelText(Level level);

} // namespace QsLogging
