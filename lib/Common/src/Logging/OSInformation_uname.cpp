// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/OSInformation.h"

#include <sys/utsname.h>

#include <string_view>

namespace Common {

ArchitectureProbe probeArchitecture()
{
    utsname names{};
    if (uname(&names) != 0)
        return ArchitectureProbe::Failed;
    // x86_64, aarch64, arm64, ppc64le, riscv64, loongarch64, mips64; one 64-bit machine differs.
    const std::string_view machine(names.machine);
    const bool wide = machine.find("64") != std::string_view::npos || machine == "s390x";
    return wide ? ArchitectureProbe::Bits64 : ArchitectureProbe::Bits32;
}

} // namespace Common
