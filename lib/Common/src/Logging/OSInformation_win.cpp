// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/OSInformation.h"

#include <windows.h>

namespace Common {

ArchitectureProbe probeArchitecture()
{
    using IsWow64ProcessFunction = BOOL(WINAPI*)(HANDLE, PBOOL);
    // Old systems lack the function, so it is looked up at run time. Compilers accept a cast
    // between unrelated function types only by way of void(*)().
    const auto address = reinterpret_cast<void (*)()>(
        GetProcAddress(GetModuleHandleW(L"kernel32"), "IsWow64Process"));
    const auto isWow64Process = reinterpret_cast<IsWow64ProcessFunction>(address);
    BOOL emulated = FALSE;
    if (isWow64Process != nullptr && !isWow64Process(GetCurrentProcess(), &emulated))
        return ArchitectureProbe::Failed;
    return emulated ? ArchitectureProbe::Bits64 : ArchitectureProbe::Bits32;
}

} // namespace Common
