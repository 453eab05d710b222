#include "support/LogCapture.h"

#include "qslog/LoggerRegistry.h"

#include <QRegularExpression>

class LogCapture::Collector : public QsLogging::Destination
{
public:
    void write(const QString& message, QsLogging::Level) override
    {
        static const QRegularExpression timestamp(
            QStringLiteral(" \\d{4}-\\d\\d-\\d\\dT[\\d:.]+ "));
        QString line = QsLogging::withoutColours(message);
        line.replace(timestamp, QStringLiteral(" "));
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        const std::lock_guard lock(m_mutex);
        m_lines.append(line);
    }
    bool isValid() override { return true; }

    QStringList take(bool clear)
    {
        const std::lock_guard lock(m_mutex);
        const QStringList all = m_lines;
        if (clear)
            m_lines.clear();
        return all;
    }

private:
    QStringList m_lines;
};

struct LogCapture::Attached
{
    QsLogging::P_Logger logger;
    QsLogging::Level levelBefore;
};

LogCapture::LogCapture(const QStringList& loggerNames)
    : m_collector(std::make_shared<Collector>())
{
    for (const QString& name : loggerNames) {
        const QsLogging::P_Logger logger = QsLogging::getLogger(name);
        m_attached.push_back({logger, logger->loggingLevel()});
        logger->setLoggingLevel(QsLogging::Level::Trace);
        logger->addDestination(m_collector);
    }
}

LogCapture::~LogCapture()
{
    for (const Attached& attached : m_attached) {
        attached.logger->removeDestination(m_collector);
        attached.logger->setLoggingLevel(attached.levelBefore);
    }
}

QStringList LogCapture::lines() const
{
    return m_collector->take(false);
}

QStringList LogCapture::messages() const
{
    static const QRegularExpression origin(QStringLiteral("^(\\S+) \\S+:\\d+ \\[[^\\]]*\\] ?"));
    QStringList result;
    for (QString line : lines())
        result.append(line.replace(origin, QStringLiteral("\\1 ")).trimmed());
    return result;
}

bool LogCapture::contains(const QString& level, const QString& text) const
{
    for (const QString& line : lines()) {
        if (line.startsWith(level + QLatin1Char(' ')) && line.contains(text))
            return true;
    }
    return false;
}

int LogCapture::count(const QString& level) const
{
    int matching = 0;
    for (const QString& line : lines())
        matching += line.startsWith(level + QLatin1Char(' ')) ? 1 : 0;
    return matching;
}

void LogCapture::clear()
{
    m_collector->take(true);
}
