#pragma once

#include <QLockFile>
#include <QString>

namespace AquenSolvar {

/// Notices a second copy of the program of the same person, by a lock file in the data directory.
/// The second copy may run: units that the first has claimed are refused to it by the operating
/// system. A lock left by a program that died does not count. GUI thread; held for the program's
/// life.
class InstanceGuard
{
public:
    /// @param directory where the lock file lies; made when absent
    explicit InstanceGuard(const QString& directory);

    /// True for the first copy, and when that cannot be told (no such directory, no permission),
    /// which is logged. Otherwise says so in the log and on standard error.
    bool checkIsFirst();

private:
    QString m_directory;
    QLockFile m_lock;
};

} // namespace AquenSolvar
