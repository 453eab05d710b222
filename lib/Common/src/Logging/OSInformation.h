#pragma once

#include "Common/Logging/ArchitectureProbe.h"

#include <QString>

namespace Common {

/// The width of the operating system: "64", "32", or "IsWow64Process Error" when it cannot be told.
/// On Windows "64" means that this process is a 32-bit one on a 64-bit system; a native 64-bit
/// process answers "32". Any thread.
QString GetOSArchitectureBits();

/// The text for the result of a probe; a failed one is logged as an error.
QString architectureBitsText(ArchitectureProbe probed);

} // namespace Common
