// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/BuildOS.h"

#include "BuildFacts.h"
#include "Common/Logging/OSInformation.h"

namespace Common {

bool BuildOS::isWindows()
{
    return buildOSString() == QLatin1String("win");
}

bool BuildOS::isMac()
{
    return buildOSString() == QLatin1String("mac");
}

bool BuildOS::isLinux()
{
    return buildOSString() == QLatin1String("linux");
}

QString BuildOS::buildOSString()
{
    return QString::fromLatin1(BuildFacts::targetSystem);
}

QString BuildOS::buildArchitectureBitsString()
{
    return GetOSArchitectureBits();
}

} // namespace Common
