// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/BuildVersion.h"

#include "BuildFacts.h"
#include "SourceRevision.h"

namespace Common {

qint64 BuildVersion::versionNumber()
{
    return versionNumberString().toLongLong();
}

QString BuildVersion::versionNumberString()
{
    return QString::fromLatin1(BuildFacts::versionNumber);
}

QString BuildVersion::majorMinorRevisionString()
{
    return QString::fromLatin1(BuildFacts::majorMinorRevision);
}

QString BuildVersion::buildNumberString()
{
    return QString::number(versionNumber() % 1000);
}

QString BuildVersion::buildGitCommit()
{
    return QString::fromLatin1(BuildFacts::sourceRevision);
}

} // namespace Common
