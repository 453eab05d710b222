#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>

namespace Common {

/// Tells when one file changes, also after it was replaced by another file, removed, or made anew,
/// which a plain file watch does not survive. For that it watches the file's directory as well, or
/// the nearest one above that exists; what happens there to other files is not told. A change is a
/// difference in existence, modification time or contents. Lives on a thread with an event loop.
class SettingsFileWatcher : public QObject
{
    Q_OBJECT

public:
    /// Watches from now on; the file need not exist.
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
