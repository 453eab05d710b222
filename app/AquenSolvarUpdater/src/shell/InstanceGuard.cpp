// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/InstanceGuard.h"

#include "qslog/Log.h"

#include <QDir>
#include <QTextStream>

namespace AquenSolvar {

InstanceGuard::InstanceGuard(const QString& directory)
    : m_directory(directory)
    , m_lock(QDir(directory).absoluteFilePath(QStringLiteral("running.lock")))
{
    // Only a dead owner makes a lock stale, not its age.
    m_lock.setStaleLockTime(0);
}

bool InstanceGuard::checkIsFirst()
{
    if (!QDir().mkpath(m_directory))
        QLOG_WARN() << "Could not make the directory" << m_directory;
    if (isFirst()) {
        if (!m_lock.isLocked())
            QLOG_WARN() << "Could not tell whether another copy of this program is running: no "
                           "lock in"
                        << m_directory;
        return true;
    }
    qint64 process = 0;
    QString host;
    QString name;
    m_lock.getLockInfo(&process, &host, &name);
    const QString text =
        QStringLiteral("Another copy of this program is running (process %1). Units that it uses "
                       "cannot be updated from this one; close one of the two.")
            .arg(process);
    QLOG_WARN() << text;
    QTextStream(stderr) << text << '\n';
    return false;
}

bool InstanceGuard::isFirst()
{
    if (m_lock.isLocked() || m_lock.tryLock(0))
        return true;
    if (m_lock.error() != QLockFile::LockFailedError)
        return true;
    // QLockFile asks whether the number of the owner's process is in use, which another process,
    // even this one, may have got. A living owner keeps the file open, and it cannot be removed.
    return m_lock.removeStaleLockFile() && m_lock.tryLock(0);
}

} // namespace AquenSolvar
