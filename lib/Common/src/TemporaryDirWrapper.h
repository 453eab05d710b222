#pragma once

#include <QObject>
#include <QTemporaryDir>

namespace Common::File {

/// A temporary directory that lives as long as a QML object (creatable type TemporaryDirWrapper).
/// It is made in the system's temporary location together with the object, readable by its owner
/// alone. When none can be made, a warning with the system's reason is logged and `path` is empty.
/// GUI thread.
class TemporaryDirWrapper : public QObject
{
    Q_OBJECT
    /// Whether the directory and all in it are deleted with the object; true at first. The signal
    /// comes with every write, whether or not the value changed.
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
