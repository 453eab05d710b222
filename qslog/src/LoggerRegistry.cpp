// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/LoggerRegistry.h"

#include <algorithm>
#include <map>
#include <mutex>

namespace QsLogging {

namespace {

struct Registry
{
    std::mutex mutex;
    std::map<QString, P_Logger> loggers;
    Level defaultLevel = Level::Off;
    std::vector<P_Destination> defaultDestinations;
};

// Never destroyed: static objects log from their destructors.
Registry& registry()
{
    static Registry& instance = *new Registry;
    return instance;
}

} // namespace

P_Logger getLogger(const QString& name)
{
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    P_Logger& logger = all.loggers[name];
    if (!logger) {
        logger = std::make_shared<Logger>();
        logger->setLoggingLevel(all.defaultLevel);
        for (const P_Destination& destination : all.defaultDestinations)
            logger->addDestination(destination);
    }
    return logger;
}

void setDefaultLevel(Level level)
{
    const std::lock_guard lock(registry().mutex);
    registry().defaultLevel = level;
}

void addDefaultDestination(const P_Destination& destination)
{
    const std::lock_guard lock(registry().mutex);
    // A logger receives a destination once: repeated ones would only be skipped by each.
    std::vector<P_Destination>& known = registry().defaultDestinations;
    if (std::find(known.begin(), known.end(), destination) == known.end())
        known.push_back(destination);
}

} // namespace QsLogging
