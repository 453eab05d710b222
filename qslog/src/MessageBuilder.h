#pragma once

#include "qslog/Level.h"

#include <QDebug>
#include <QString>

namespace QsLogging {

/// Builds one log line: items are streamed into it, and its end writes the line to the destinations
/// of its logger. The level is not tested here; whoever makes a builder has done so. A temporary of
/// one thread.
class MessageBuilder
{
public:
    MessageBuilder(Level level, const QString& loggerName);

    /// A builder for a source file's own logger whose text starts with the place of the call.
    MessageBuilder(Level level, const char* file, int line, const char* function);

    MessageBuilder(const MessageBuilder&) = delete;
    MessageBuilder& operator=(const MessageBuilder&) = delete;
    ~MessageBuilder();

    /// The stream for the caller's items: a space follows each, text objects are put in quotes.
    QDebug& stream() { return m_stream; }

private:
    Level m_level;
    QString m_loggerName;
    QString m_buffer;
    QDebug m_stream;
};

/// The place of a call as it stands in a line: file and line in blue, the function in brackets.
QString originText(const QString& fileName, const QString& line, const QString& function);

/// The logger name of a source file: its file name without directory and without any extension.
QString loggerNameOf(const char* file);

} // namespace QsLogging
