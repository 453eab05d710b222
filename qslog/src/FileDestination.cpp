// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/FileDestination.h"

#include <QFileInfo>

#include <map>
#include <mutex>

namespace QsLogging {

FileDestination::FileDestination(const QString& path)
{
    open(path);
}

void FileDestination::open(const QString& path)
{
    m_stream.reset();
    m_file = std::make_shared<QFile>(path);
    if (!m_file->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return;
    m_stream = std::make_shared<QTextStream>(m_file.get());
    m_stream->setCodec("UTF-8");
}

void FileDestination::write(const QString& message, Level)
{
    const QString plain = withoutColours(message);
    const std::lock_guard lock(m_mutex);
    if (!m_stream || !m_file)
        return;
    if (m_maxSize > 0 && m_file->size() > m_maxSize)
        rotateLocked();
    if (!m_stream)
        return;
    *m_stream << plain << '\n';
    m_stream->flush();
    // A stream keeps its error and then refuses every later line: one full disk would silence it.
    m_stream->resetStatus();
}

bool FileDestination::isValid()
{
    const std::lock_guard lock(m_mutex);
    return m_file && m_file->isOpen();
}

bool FileDestination::rotate()
{
    const std::lock_guard lock(m_mutex);
    return rotateLocked();
}

bool FileDestination::rotateLocked()
{
    const QString path = m_file->fileName();
    // A directory of this name is not a log: renaming it would move all its files.
    if (QFileInfo(path).isDir())
        return false;
    const QString oldPath = path + QStringLiteral(".old");
    if (QFile::exists(oldPath))
        QFile::remove(oldPath);
    // Windows does not rename an open file.
    m_stream.reset();
    m_file->close();
    const bool moved = QFile::rename(path, oldPath);
    open(path);
    return moved;
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
