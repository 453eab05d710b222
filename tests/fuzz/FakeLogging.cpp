#include "FakeLogging.h"

#include "qslog/DebugOutputDestination.h"
#include "qslog/FileDestination.h"
#include "qslog/LoggerRegistry.h"

namespace Fuzz {

FakeLogging& FakeLogging::instance()
{
    static FakeLogging only;
    return only;
}

} // namespace Fuzz

namespace QsLogging {

using Fuzz::FakeLogging;

P_Logger getLogger(const QString& name)
{
    FakeLogging& all = FakeLogging::instance();
    P_Logger& logger = all.loggers[name];
    if (!logger) {
        logger = std::make_shared<Logger>();
        logger->setLoggingLevel(all.defaultLevel);
        for (const P_Destination& destination : all.defaultDestinations)
            logger->addDestination(destination);
    }
    return logger;
}

void setDefaultLevel(Level level)
{
    FakeLogging::instance().defaultLevel = level;
}

void addDefaultDestination(const P_Destination& destination)
{
    FakeLogging::instance().defaultDestinations.push_back(destination);
}

std::shared_ptr<FileDestination> fileDestinationFor(const QString& path)
{
    return std::make_shared<FileDestination>(path);
}

FileDestination::FileDestination(const QString& path)
{
    open(path);
}

void FileDestination::open(const QString& path)
{
    FakeLogging::instance().files.append(path);
}

void FileDestination::write(const QString&, Level)
{
    ++FakeLogging::instance().linesInFiles;
}

bool FileDestination::isValid()
{
    return true;
}

bool FileDestination::rotate()
{
    return rotateLocked();
}

bool FileDestination::rotateLocked()
{
    return true;
}

bool FileDestination::setMaxSize(qint64 bytes)
{
    m_maxSize = bytes;
    FakeLogging::instance().sizes.append(bytes);
    return true;
}

void DebugOutputDestination::write(const QString&, Level)
{
    ++FakeLogging::instance().linesOnConsole;
}

std::shared_ptr<DebugOutputDestination> debugOutputDestination()
{
    return std::make_shared<DebugOutputDestination>();
}

} // namespace QsLogging
