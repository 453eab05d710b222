#pragma once

#include <QByteArray>
#include <QTemporaryDir>

/// A directory of a test's own, gone when the object goes. What cannot be written fails the running
/// test.
class TempFiles
{
public:
    QString root() const { return m_directory.path(); }

    /// The path of a name below the directory; an absolute one stays what it is.
    QString path(const QString& name) const;

    /// Writes a file, replacing an earlier one and making the directories on the way; its path.
    QString put(const QString& name, const QByteArray& contents = {}) const;

    /// The file's bytes, or "unreadable".
    QByteArray get(const QString& name) const;

private:
    QTemporaryDir m_directory;
};
