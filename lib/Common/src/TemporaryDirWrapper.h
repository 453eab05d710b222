// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>
#include <QTemporaryDir>

namespace Common::File {

/// A temporary directory with the lifetime of a QML object (creatable type TemporaryDirWrapper).
/// Created with the object in the system's temporary location, accessible to its owner only. On
/// failure, logs a warning with the system's reason; `path` is empty then. GUI thread.
class TemporaryDirWrapper : public QObject
{
    Q_OBJECT
    /// Whether the directory and its contents are deleted with the object. Initially true. Every
    /// write emits the signal, even without a change.
    Q_PROPERTY(bool autoRemove READ autoRemove WRITE setAutoRemove NOTIFY autoRemoveChanged)
    /// The directory's absolute path.
    Q_PROPERTY(QString path READ path CONSTANT)

public:
    explicit TemporaryDirWrapper(QObject* parent = nullptr);

    bool autoRemove() const;
    void setAutoRemove(bool autoRemove);
    QString path() const;

signals:
    void autoRemoveChanged();

private:
    QTemporaryDir m_directory;
};

} // namespace Common::File
