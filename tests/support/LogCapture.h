#pragma once

#include "qslog/Destination.h"

#include <QStringList>

/// Collects the lines of named loggers during a test, without colours and without timestamps:
/// "INFO File.cpp:12 [function] text". Takes the loggers to Trace while it lives and restores their
/// level afterwards. Any thread may log into it.
class LogCapture
{
public:
    explicit LogCapture(const QStringList& loggerNames);
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture();

    /// All lines so far, in order, trailing blanks removed.
    QStringList lines() const;

    /// Level and text of each line, without the origin: "INFO text".
    QStringList messages() const;

    /// Whether a line of that level ("WARN") holds that text.
    bool contains(const QString& level, const QString& text) const;

    /// How many lines are of that level.
    int count(const QString& level) const;

    void clear();

private:
    class Collector;
    struct Attached;
    std::shared_ptr<Collector> m_collector;
    std::vector<Attached> m_attached;
};
