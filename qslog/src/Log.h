// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/LoggerRegistry.h"
#include "qslog/MessageBuilder.h"

/// The logging call: `QLOG_INFO() << "Schema Version:" << version;` writes one line through the
/// logger named after the source file. A suppressed call builds nothing and does not evaluate its
/// items. The logger is looked up once per call site; loggers are never destroyed.
#define QLOG_AT(level)                                                                             \
    for (QsLogging::Logger* qslogLogger = QsLogging::loggerOfCallSite([] { return __FILE__; });    \
         qslogLogger != nullptr && qslogLogger->admits(level); qslogLogger = nullptr)              \
    QsLogging::MessageBuilder(level, __FILE__, __LINE__, __func__).stream()

#define QLOG_TRACE() QLOG_AT(QsLogging::Level::Trace)
#define QLOG_DEBUG() QLOG_AT(QsLogging::Level::Debug)
#define QLOG_INFO() QLOG_AT(QsLogging::Level::Info)
#define QLOG_WARN() QLOG_AT(QsLogging::Level::Warn)
#define QLOG_ERROR() QLOG_AT(QsLogging::Level::Error)
#define QLOG_FATAL() QLOG_AT(QsLogging::Level::Fatal)

namespace QsLogging {

/// The logger of a source file, looked up once for each type of @p file: once per call site, where
/// it is a lambda that returns the file's name. Owned by the registry for the life of the process.
/// Any thread.
template <typename File>
Logger* loggerOfCallSite(File file)
{
    static Logger* const logger = getLogger(loggerNameOf(file())).get();
    return logger;
}

} // namespace QsLogging
