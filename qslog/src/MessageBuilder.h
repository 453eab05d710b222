// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/Level.h"

#include <QDebug>
#include <QString>

namespace QsLogging {

/// Builds one log line. Items are streamed into it; its destructor writes the line to the
/// destinations of its logger. Does not test the level: the caller has done so. A temporary of one
/// thread.
class MessageBuilder
{
public:
    MessageBuilder(Level level, const QString& loggerName);

    /// A builder for the logger of a source file. The text starts with the place of the call.
    MessageBuilder(Level level, const char* file, int line, const char* function);

    MessageBuilder(const MessageBuilder&) = delete;
    MessageBuilder& operator=(const MessageBuilder&) = delete;
    ~MessageBuilder();

    /// The stream for the caller's items. A space follows each item; text objects are quoted.
    QDebug& stream() { return m_stream; }

private:
    Level m_level;
    QString m_loggerName;
    QString m_buffer;
    QDebug m_stream;
};

/// The place of a call as a line shows it: file and line in blue, the function in brackets.
QString originText(const QString& fileName, const QString& line, const QString& function);

/// The logger name of a source file: its file name without directory and without any extension.
QString loggerNameOf(const char* file);

} // namespace QsLogging
