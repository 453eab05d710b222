// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

#include <atomic>

namespace QsLogging {

/// Whether log files lose lines, for those who show it: the log never reports its own failures. A
/// file fails while it cannot be opened, and from a write that failed to the next one that
/// succeeds. Any thread.
class LogFailures : public QObject
{
    Q_OBJECT

public:
    /// The instance of the process. Never destroyed: threads may log while the process ends.
    static LogFailures& instance();

    /// Whether at least one file fails.
    bool any() const { return m_files > 0; }

    /// Counts files that began to fail, or, if negative, that no longer do. For destinations.
    void add(int files);

signals:
    /// A file began to fail, or no longer does. Emitted on the thread that logs, which holds locks
    /// of the log: connect with Qt::QueuedConnection.
    void changed();

private:
    LogFailures() = default;

    std::atomic<int> m_files{0};
};

} // namespace QsLogging
