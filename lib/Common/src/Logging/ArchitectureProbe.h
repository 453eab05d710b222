#pragma once

namespace Common {

enum class ArchitectureProbe
{
    Bits32,
    Bits64,
    Failed ///< the system refused to answer
};

/// Asks the running system for its width. One implementation per platform: Windows tells whether
/// this process runs under 32-bit emulation (so a native 64-bit process finds Bits32), others name
/// the kernel's machine type. Any thread.
ArchitectureProbe probeArchitecture();

} // namespace Common
