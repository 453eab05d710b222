// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

/// A temporary folder of one test, removed with this object.
class TempFiles
{
public:
    QString root() const { return m_directory.path(); }

    /// The path of a name below the folder; an absolute one stays as it is.
    QString path(const QString& name) const { return QDir(root()).absoluteFilePath(name); }

    /// Writes a file in place of an earlier one, with its parent folders, and returns its path. A
    /// file that cannot be written fails the running test.
    QString put(const QString& name, const QByteArray& contents = {}) const
    {
        QFile file(path(name));
        if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly) ||
            file.write(contents) != contents.size())
            QTest::qFail(qPrintable(file.errorString()), __FILE__, __LINE__);
        return file.fileName();
    }

    /// The file's text, or "unreadable".
    QByteArray get(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly | QIODevice::Text) ? file.readAll()
                                                                : QByteArray("unreadable");
    }

private:
    QTemporaryDir m_directory;
};
