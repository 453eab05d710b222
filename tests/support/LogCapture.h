#pragma once

#include "qslog/AnsiColours.h"
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
    explicit LogCapture(QStringList loggerNames)
        : m_loggerNames(std::move(loggerNames))
    {
        for (const QString& name : m_loggerNames) {
            QsLogging::getLogger(name)->setLoggingLevel(QsLogging::Level::Trace);
            QsLogging::getLogger(name)->addDestination(m_collector);
        }
    }
    ~LogCapture()
    {
        for (const QString& name : m_loggerNames)
            QsLogging::getLogger(name)->removeDestination(m_collector);
    }

    /// All lines so far, in order, without trailing blanks.
    QStringList lines() const { return m_collector->lines(); }

    /// Level and text of each line, without the origin: "INFO text".
    QStringList messages() const
    {
        const QRegularExpression origin("^(\\S+) \\S+:\\d+ \\[[^\\]]*\\] ?(.*)$");
        QStringList texts = lines().replaceInStrings(origin, "\\1 \\2");
        return texts.replaceInStrings(QRegularExpression(" +$"), "");
    }

    /// Whether a line of that level ("WARN") has that text in it.
    bool contains(const QString& level, const QString& text) const
    {
        const QStringList found = lines().filter(text);
        return !found.filter(QRegularExpression("^" + level + " ")).isEmpty();
    }

    /// How many lines are of that level.
    int count(const QString& level) const
    {
        return lines().filter(QRegularExpression("^" + level + " ")).size();
    }

    void clear() { m_collector->clear(); }

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
        QStringList lines()
        {
            const std::lock_guard lock(m_mutex);
            return m_lines;
        }
        void clear()
        {
            const std::lock_guard lock(m_mutex);
            m_lines.clear();
        }

    private:
        QStringList m_lines;
    };

    QStringList m_loggerNames;
    std::shared_ptr<Collector> m_collector = std::make_shared<Collector>();
};
