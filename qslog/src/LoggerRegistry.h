// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/Logger.h"

#include <QString>

namespace QsLogging {

/// The logger of that name, compared exactly. Never null. The first use creates it with the default
/// level and the default destinations of that moment. Any thread.
P_Logger getLogger(const QString& name);

/// Sets the level that loggers created from now on start with. Initially Off. Any thread.
void setDefaultLevel(Level level);

/// Appends to the destinations that loggers created from now on start with. Initially none. An
/// object may be appended twice; a logger still takes it once. Any thread.
void addDefaultDestination(const P_Destination& destination);

} // namespace QsLogging
