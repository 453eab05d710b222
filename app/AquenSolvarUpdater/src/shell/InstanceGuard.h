// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QLockFile>
#include <QString>

namespace AquenSolvar {

/// Detects a second copy of the program run by the same person, with a lock file in the data
/// directory. The second copy may run: the operating system denies it the units that the first has
/// claimed. A lock whose process has died does not count. Keep it until the program ends. GUI
/// thread.
class InstanceGuard
{
public:
    /// @param directory holds the lock file; created by checkIsFirst() if missing
    explicit InstanceGuard(const QString& directory);

    /// @return true for the first copy, and when this is unknown (no directory or no permission,
    ///         which is logged); otherwise false, reported in the log and on standard error
    bool checkIsFirst();

    /// As checkIsFirst(), but without a report. A second copy becomes the first one by calling this
    /// after the other has ended.
    bool isFirst();

private:
    QString m_directory;
    QLockFile m_lock;
};

} // namespace AquenSolvar
