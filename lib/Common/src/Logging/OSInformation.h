// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/Log.h"

#include <QString>

namespace Common {

enum class ArchitectureProbe
{
    Bits32,
    Bits64,
    Failed ///< the system call failed
};

/// Asks the running system for its width; one implementation per platform. Windows reports whether
/// this process runs under 32-bit emulation, so a native 64-bit process finds Bits32. Other systems
/// report the kernel's machine type. Any thread.
ArchitectureProbe probeArchitecture();

/// The text for the result of a probe: "64", "32", or "IsWow64Process Error" for a failed one,
/// which also logs an error. Inline in this header so that the line goes to the logger
/// OSInformation on every platform. Any thread.
inline QString GetOSArchitectureBits(ArchitectureProbe probed)
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

/// The width of the operating system, as above. On Windows "64" means a 32-bit process on a 64-bit
/// system; a native 64-bit process gets "32". Any thread.
inline QString GetOSArchitectureBits()
{
    return GetOSArchitectureBits(probeArchitecture());
}

} // namespace Common
