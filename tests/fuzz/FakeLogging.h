#pragma once

#include "qslog/Logger.h"

#include <QStringList>

#include <map>

namespace Fuzz {

/// Stands in for the registry of loggers and for log files, at link time: the real ones keep every
/// logger and file for the life of the process, and a fuzzed configuration must not choose which of
/// this machine's files are opened, moved and written.
struct FakeLogging
{
    std::map<QString, QsLogging::P_Logger> loggers;
    QsLogging::Level defaultLevel = QsLogging::Level::Off;
    std::vector<QsLogging::P_Destination> defaultDestinations;
    QStringList files;   ///< in the order in which they were asked for
    QList<qint64> sizes; ///< as set, in order
    int linesInFiles = 0;
    int linesOnConsole = 0;

    static FakeLogging& instance();
};

} // namespace Fuzz
