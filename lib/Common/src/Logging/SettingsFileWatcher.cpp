// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/SettingsFileWatcher.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Common {

namespace {

constexpr qint64 largestCompared = qint64{1024} * 1024;

QString nearestDirectory(const QString& path)
{
    QString directory = QFileInfo(path).absolutePath();
    while (!QFileInfo(directory).isDir() && !QDir(directory).isRoot())
        directory = QFileInfo(directory).absolutePath();
    return directory;
}

} // namespace

SettingsFileWatcher::SettingsFileWatcher(const QString& path, QObject* parent)
    : QObject(parent)
    , m_path(path)
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &SettingsFileWatcher::compare);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &SettingsFileWatcher::compare);
    rearm();
    m_last = takeSnapshot();
}

void SettingsFileWatcher::rearm()
{
    // A directory may be created between check and watch: check again afterwards.
    QString directory = nearestDirectory(m_path);
    do {
        const QStringList watched = m_watcher.directories();
        if (!watched.contains(directory)) {
            if (!watched.isEmpty())
                m_watcher.removePaths(watched);
            if (!m_watcher.addPath(directory))
                break;
        }
        directory = nearestDirectory(m_path);
    } while (!m_watcher.directories().contains(directory));

    // The watcher drops a removed or replaced file.
    if (QFileInfo(m_path).isFile() && !m_watcher.files().contains(m_path))
        m_watcher.addPath(m_path);
}

void SettingsFileWatcher::compare()
{
    rearm();
    const Snapshot now = takeSnapshot();
    if (now == m_last)
        return;
    m_last = now;
    emit fileChanged(m_path);
}

SettingsFileWatcher::Snapshot SettingsFileWatcher::takeSnapshot() const
{
    Snapshot snapshot;
    const QFileInfo info(m_path);
    snapshot.exists = info.isFile();
    if (!snapshot.exists)
        return snapshot;
    snapshot.modified = info.lastModified().toMSecsSinceEpoch();
    QFile file(m_path);
    if (file.open(QIODevice::ReadOnly))
        snapshot.digest =
            QCryptographicHash::hash(file.read(largestCompared), QCryptographicHash::Sha1);
    return snapshot;
}

} // namespace Common
