// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/FileDestination.h"

#include "qslog/LogFailures.h"
#include "qslog/LogFile.h"

#include <QFileInfo>

#include <map>
#include <mutex>
#include <utility>

namespace QsLogging {

FileDestination::FileDestination(const QString& path)
    : m_path(path)
{
    open();
    setFailing(!m_file->isOpen());
}

FileDestination::~FileDestination()
{
    setFailing(false);
}

void FileDestination::open()
{
    m_file = std::make_unique<QFile>(m_path);
    openLogFile(*m_file);
}

void FileDestination::write(const QString& message, Level)
{
    const QString plain = withoutColours(message);
    const std::lock_guard lock(m_mutex);
    setFailing(!writeLocked(plain));
}

bool FileDestination::writeLocked(const QString& line)
{
    if (!m_file->isOpen())
        open();
    if (m_file->isOpen() && m_maxSize > 0 && m_file->size() > m_maxSize)
        rotateLocked();
    // Not by a text stream, whose codec is gone while the process ends.
    const QByteArray bytes = line.toUtf8() + '\n';
    return m_file->isOpen() && m_file->write(bytes) == bytes.size() && m_file->flush();
}

void FileDestination::setFailing(bool failing)
{
    if (std::exchange(m_failing, failing) != failing)
        LogFailures::instance().add(failing ? 1 : -1);
}

bool FileDestination::isValid()
{
    const std::lock_guard lock(m_mutex);
    return m_file->isOpen();
}

bool FileDestination::rotate()
{
    const std::lock_guard lock(m_mutex);
    return rotateLocked();
}

bool FileDestination::rotateLocked()
{
    // A directory of this name is not a log: renaming it would move all its files.
    if (QFileInfo(m_path).isDir())
        return false;
    const QString oldPath = m_path + QStringLiteral(".old");
    if (QFile::exists(oldPath))
        QFile::remove(oldPath);
    // The file stays open: without permission for the directory there may be none to open it again.
    if (!QFile::rename(m_path, oldPath))
        return false;
    open();
    return true;
}

bool FileDestination::setMaxSize(qint64 bytes)
{
    const std::lock_guard lock(m_mutex);
    m_maxSize = bytes;
    if (bytes >= 1 && m_file->size() > bytes)
        rotateLocked();
    return true;
}

std::shared_ptr<FileDestination> fileDestinationFor(const QString& path)
{
    // Never destroyed: threads may log while the process ends.
    static std::mutex& mutex = *new std::mutex;
    static auto& destinations = *new std::map<QString, std::shared_ptr<FileDestination>>;

    const QString absolutePath = QFileInfo(path).absoluteFilePath();
    const std::lock_guard lock(mutex);
    std::shared_ptr<FileDestination>& destination = destinations[absolutePath];
    if (!destination)
        destination = std::make_shared<FileDestination>(absolutePath);
    return destination;
}

} // namespace QsLogging
