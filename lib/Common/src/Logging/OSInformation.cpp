#include "Common/Logging/OSInformation.h"

#include "qslog/Log.h"

namespace Common {

QString GetOSArchitectureBits()
{
    return architectureBitsText(probeArchitecture());
}

QString architectureBitsText(ArchitectureProbe probed)
{
    switch (probed) {
    case ArchitectureProbe::Bits64:
        return QStringLiteral("64");
    case ArchitectureProbe::Bits32:
        return QStringLiteral("32");
    case ArchitectureProbe::Failed:
        break;
    }
    QLOG_ERROR() << "IsWow64Process returned an error.";
    return QStringLiteral("IsWow64Process Error");
}

} // namespace Common
