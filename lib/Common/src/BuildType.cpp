// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/BuildType.h"

#include "BuildFacts.h"

namespace Common {

bool BuildType::isPublic()
{
    return isRelease();
}

bool BuildType::isRelease()
{
    return buildTypeString() == QLatin1String("release");
}

bool BuildType::isRC()
{
    return buildTypeString() == QLatin1String("rc");
}

bool BuildType::isBeta()
{
    return buildTypeString() == QLatin1String("beta");
}

bool BuildType::isTesting()
{
    return buildTypeString() == QLatin1String("testing");
}

QString BuildType::buildTypeString()
{
    return QString::fromLatin1(BuildFacts::buildType);
}

} // namespace Common
