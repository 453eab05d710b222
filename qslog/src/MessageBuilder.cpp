// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/MessageBuilder.h"

#include "qslog/LoggerRegistry.h"

#include <QDateTime>
#include <QFileInfo>

namespace QsLogging {

namespace {

// Indexed by the numeric level.
constexpr const char* levelTexts[] = {
    "\x1b[0;37mTRACE\x1b[0m",
    "\x1b[1;33mDEBUG\x1b[0m",
    "\x1b[1;30mINFO\x1b[0m",
    "\x1b[1;31mWARN\x1b[0m",
    "\x1b[31mERROR\x1b[0m",
    "\x1b[31mFATAL\x1b[0m",
    "",
};

QString levelText(Level level)
{
    const bool known = level >= Level::Trace && level <= Level::Off;
    return QString::fromLatin1(levelTexts[static_cast<qint32>(known ? level : Level::Info)]);
}

// Local time. Not by QDateTime::toString(), whose calendars are gone while the process ends.
QString timestampText()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return QString::asprintf("%04d-%02d-%02dT%02d:%02d:%02d.%03d", date.year(), date.month(),
                             date.day(), time.hour(), time.minute(), time.second(), time.msec());
}

} // namespace

MessageBuilder::MessageBuilder(Level level, const QString& loggerName)
    : m_level(level)
    , m_loggerName(loggerName)
    , m_stream(&m_buffer)
{
}

MessageBuilder::MessageBuilder(Level level, const char* file, int line, const char* function)
    : MessageBuilder(level, loggerNameOf(file))
{
    const QString fileName = QFileInfo(QString::fromLocal8Bit(file)).fileName();
    const QString origin =
        originText(fileName, QString::number(line), QString::fromLatin1(function));
    m_stream << origin.toUtf8().constData();
}

MessageBuilder::~MessageBuilder()
{
    const QString line = QStringLiteral("%1 \x1b[0;37m%2\x1b[0m %3")
                             .arg(levelText(m_level), 5)
                             .arg(timestampText(), m_buffer);
    getLogger(m_loggerName)->dispatch(line, m_level);
}

QString originText(const QString& fileName, const QString& line, const QString& function)
{
    return QStringLiteral("\x1b[1;34m%1:%2\x1b[0m [%3]").arg(fileName, line, function);
}

QString loggerNameOf(const char* file)
{
    return QFileInfo(QString::fromLocal8Bit(file)).baseName();
}

} // namespace QsLogging
