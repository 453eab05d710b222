// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/Destination.h"
#include "qslog/LoggerRegistry.h"

#include <QRegularExpression>
#include <QStringList>

/// Collects the lines of named loggers while it lives, at every level and without colours and time:
/// "INFO File.cpp:12 [function] text". The loggers stay at Trace. Any thread may log.
class LogCapture
{
    Q_DISABLE_COPY(LogCapture)

public:
    explicit LogCapture(const QStringList& loggerNames)
    {
        for (const QString& name : loggerNames) {
            m_loggers << QsLogging::getLogger(name);
            m_loggers.last()->setLoggingLevel(QsLogging::Level::Trace);
            m_loggers.last()->addDestination(m_collector);
        }
    }
    ~LogCapture()
    {
        for (const QsLogging::P_Logger& logger : qAsConst(m_loggers))
            logger->removeDestination(m_collector);
    }

    /// All lines so far, in order, without trailing blanks.
    QStringList lines() const { return m_collector->take(false); }

    /// Level and text of each line, without the origin: "INFO text".
    QStringList messages() const
    {
        const QRegularExpression origin("^(\\S+) \\S+:\\d+ \\[[^\\]]*\\]");
        return lines().replaceInStrings(origin, "\\1");
    }

    /// Whether a line of that level ("WARN") has that text in it.
    bool contains(const QString& level, const QString& text) const
    {
        return !ofLevel(level).filter(text).isEmpty();
    }

    /// How many lines are of that level.
    int count(const QString& level) const { return ofLevel(level).size(); }

    void clear() { m_collector->take(true); }

private:
    class Collector : public QsLogging::Destination
    {
    public:
        void write(const QString& message, QsLogging::Level) override
        {
            static const QRegularExpression timeOrEnd(" \\d{4}-\\d\\d-\\d\\dT[\\d:.]+(?= )| +$");
            const std::lock_guard lock(m_mutex);
            m_lines << QsLogging::withoutColours(message).remove(timeOrEnd);
        }
        bool isValid() override { return true; }
        QStringList take(bool clears)
        {
            const std::lock_guard lock(m_mutex);
            return clears ? std::exchange(m_lines, {}) : m_lines;
        }

    private:
        QStringList m_lines;
    };

    QStringList ofLevel(const QString& level) const
    {
        return lines().filter(QRegularExpression("^" + level + " "));
    }

    QList<QsLogging::P_Logger> m_loggers;
    std::shared_ptr<Collector> m_collector = std::make_shared<Collector>();
};
