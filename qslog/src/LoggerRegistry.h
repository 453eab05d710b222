#pragma once

#include "qslog/Logger.h"

#include <QString>

namespace QsLogging {

/// The logger of that name (compared exactly). On first use it is made with the default level and
/// the default destinations of that moment. Never null. Any thread.
P_Logger getLogger(const QString& name);

/// Sets the level that loggers made from now on start with; Off at first. Any thread.
void setDefaultLevel(Level level);

/// Appends to the list of destinations that loggers made from now on start with; empty at first. An
/// object may be appended twice, a logger still takes it once. Any thread.
void addDefaultDestination(const P_Destination& destination);

} // namespace QsLogging
