# SPDX-License-Identifier: LicenseRef-Proprietary
# Compiler and linker options that make memory errors harder to exploit. scripts/check-hardening and
# scripts/check-windows-binaries check the built executables for all of them.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

if(UNIX AND NOT APPLE)
    add_compile_options(-fstack-protector-strong -fstack-clash-protection)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
        add_compile_options(-fcf-protection)
    endif()
    # Fortified calls exist only in optimised code, and hide faults from the sanitizers' own checks.
    if(NOT ASU_SANITIZE)
        add_compile_options($<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE>
                            $<$<CONFIG:Release,RelWithDebInfo>:-D_FORTIFY_SOURCE=2>)
        add_compile_definitions($<$<CONFIG:Release,RelWithDebInfo>:_GLIBCXX_ASSERTIONS>)
    endif()
    # as-needed: a static library brings what it may use; a program loads what it does use.
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--as-needed)
endif()

if(MINGW)
    add_compile_options(-fstack-protector-strong)
    # Linked statically: what checks the stack must not depend on a further library.
    string(APPEND CMAKE_CXX_STANDARD_LIBRARIES " -l:libssp.a")
    add_compile_definitions($<$<CONFIG:Release,RelWithDebInfo>:_GLIBCXX_ASSERTIONS>)
    # Without the time of linking, the same sources give the same bytes.
    add_link_options(-Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat -Wl,--no-insert-timestamp)
endif()
