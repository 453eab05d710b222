// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>

namespace Common {

/// Reports changes of one file, including replacement, removal and re-creation, which end a plain
/// file watch. To that end it also watches the file's directory, or the nearest existing parent;
/// changes of other files there are not reported. A change is a difference in existence,
/// modification time or contents. Lives on a thread with an event loop.
class SettingsFileWatcher : public QObject
{
    Q_OBJECT

public:
    /// Starts watching. The file need not exist.
    explicit SettingsFileWatcher(const QString& path, QObject* parent = nullptr);

signals:
    void fileChanged(const QString& path);

private:
    struct Snapshot
    {
        bool exists = false;
        qint64 modified = 0;
        QByteArray digest;

        bool operator==(const Snapshot& other) const
        {
            return exists == other.exists && modified == other.modified && digest == other.digest;
        }
    };

    void rearm();
    void compare();
    Snapshot takeSnapshot() const;

    QString m_path;
    QFileSystemWatcher m_watcher;
    Snapshot m_last;
};

} // namespace Common
