// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/Logger.h"

#include <algorithm>

namespace QsLogging {

void Logger::addDestination(const P_Destination& destination)
{
    const std::lock_guard lock(m_mutex);
    if (std::find(m_destinations.begin(), m_destinations.end(), destination) ==
        m_destinations.end())
        m_destinations.push_back(destination);
}

void Logger::removeDestination(const P_Destination& destination)
{
    const std::lock_guard lock(m_mutex);
    m_destinations.erase(std::remove(m_destinations.begin(), m_destinations.end(), destination),
                         m_destinations.end());
}

void Logger::dispatch(const QString& line, Level level)
{
    const std::lock_guard lock(m_mutex);
    for (const P_Destination& destination : m_destinations)
        destination->write(line, level);
}

} // namespace QsLogging
