// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/LoggingConfiguration.h"

#include "Common/Logging/IniDocument.h"
#include "qslog/DebugOutputDestination.h"
#include "qslog/FileDestination.h"
#include "qslog/LoggerRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtDebug>

namespace Common {

namespace {

using QsLogging::Level;

const QString levelKey = QStringLiteral("level");
const QString consoleKey = QStringLiteral("console");
const QString colorsKey = QStringLiteral("colors");
const QString fileKey = QStringLiteral("file");
const QString truncateKey = QStringLiteral("truncate");
const QString defaultSection = QStringLiteral("default");

Level levelFromName(const QString& name)
{
    static const QStringList names = {QStringLiteral("TRACE"), QStringLiteral("DEBUG"),
                                      QStringLiteral("INFO"),  QStringLiteral("WARN"),
                                      QStringLiteral("ERROR"), QStringLiteral("FATAL")};
    const int index = names.indexOf(name);
    return index < 0 ? Level::Off : static_cast<Level>(index);
}

bool isOn(const std::optional<QString>& value)
{
    return value == QStringLiteral("on");
}

const std::shared_ptr<QsLogging::DebugOutputDestination>& console()
{
    static const auto destination = QsLogging::debugOutputDestination();
    return destination;
}

std::optional<IniDocument> readIniFile(const QString& path)
{
    // Opening a named pipe would block until another process writes to it.
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray text = file.read(IniDocument::maximumSize + 1);
    // A read error midway must not look like the end of the file.
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    if (text.size() > IniDocument::maximumSize)
        qCritical() << "Could not read logging configuration of more than"
                    << IniDocument::maximumSize << "bytes:" << path;
    return IniDocument::parse(text);
}

void applyTruncateSize(QsLogging::FileDestination& destination, const QString& text)
{
    bool parsed = false;
    const qint64 bytes = text.toLongLong(&parsed);
    if (!parsed)
        qDebug() << "Could not parse truncate size" << text;
    else if (destination.setMaxSize(bytes))
        qDebug() << "Truncated log file to" << bytes;
    else
        qDebug() << "Could not truncate log file to" << bytes;
}

void addFileOf(const IniSection& section, const QString& logDirectory)
{
    const std::optional<QString> name = section.value(fileKey);
    if (!name)
        return;
    const auto destination =
        QsLogging::fileDestinationFor(QDir(logDirectory).absoluteFilePath(*name));
    if (const std::optional<QString> size = section.value(truncateKey))
        applyTruncateSize(*destination, *size);
    QsLogging::addDefaultDestination(destination);
}

void applyDefaults(const IniSection& section, const QString& logDirectory)
{
    QsLogging::setDefaultLevel(levelFromName(section.value(levelKey).value_or(QString())));
    if (isOn(section.value(consoleKey)))
        QsLogging::addDefaultDestination(console());
    if (isOn(section.value(colorsKey)))
        console()->setColours(true);
    addFileOf(section, logDirectory);
}

void applyLogger(const IniSection& section, const QString& logDirectory, bool allowDebugLevels)
{
    const QsLogging::P_Logger logger = QsLogging::getLogger(section.name());
    if (const std::optional<QString> name = section.value(levelKey)) {
        const Level level = levelFromName(*name);
        logger->setLoggingLevel(!allowDebugLevels && level < Level::Info ? Level::Info : level);
    }
    addFileOf(section, logDirectory);
    if (const std::optional<QString> value = section.value(consoleKey)) {
        if (isOn(value))
            logger->addDestination(console());
        else
            logger->removeDestination(console());
    }
}

} // namespace

bool loadLoggingConfiguration(const QString& iniPath, const QString& logDirectory,
                              bool allowDebugLevels)
{
    const std::optional<IniDocument> document = readIniFile(iniPath);
    if (!document)
        return false;
    const IniSection* defaults = document->section(defaultSection);
    applyDefaults(defaults != nullptr ? *defaults : IniSection(defaultSection), logDirectory);
    for (const IniSection& section : document->sections()) {
        if (section.name() != defaultSection)
            applyLogger(section, logDirectory, allowDebugLevels);
    }
    return true;
}

} // namespace Common
