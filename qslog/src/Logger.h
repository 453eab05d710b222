// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/Destination.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace QsLogging {

/// One named source of log lines: a threshold and an ordered list of destinations. Created by
/// getLogger(), shared, and never destroyed while the process runs. Any thread.
class Logger
{
public:
    Logger() = default;
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// The threshold. Read and written without a lock.
    Level loggingLevel() const { return m_level.load(std::memory_order_relaxed); }
    void setLoggingLevel(Level level) { m_level.store(level, std::memory_order_relaxed); }

    /// Whether a message of that level is written.
    bool admits(Level level) const { return loggingLevel() <= level; }

    /// Appends the destination unless this very object is already in the list.
    void addDestination(const P_Destination& destination);

    /// Removes this very object from the list. Does nothing if it is absent.
    void removeDestination(const P_Destination& destination);

    /// Hands one finished line to every destination in list order. Ignores the threshold.
    void dispatch(const QString& line, Level level);

private:
    std::mutex m_mutex;
    std::atomic<Level> m_level{Level::Info};
    std::vector<P_Destination> m_destinations;
};

using P_Logger = std::shared_ptr<Logger>;

} // namespace QsLogging
