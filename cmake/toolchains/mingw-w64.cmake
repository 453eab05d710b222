# SPDX-License-Identifier: LicenseRef-Proprietary
# Cross-compiles for Windows x86-64 on Debian: MinGW-w64 with POSIX threads, Qt and libusb from the SDK
# that scripts/windows-sdk provides, zlib from Debian. Needs CMake 3.22.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(asu_triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${asu_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${asu_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${asu_triplet}-windres)

get_filename_component(asu_sources "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
set(ASU_WINDOWS_SDK "${asu_sources}/build/windows-sdk" CACHE PATH "Qt and libusb for Windows")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ASU_WINDOWS_SDK)

# Programs are the host's, and so are files that are no library (fonts, Underscore.js).
set(CMAKE_FIND_ROOT_PATH "${ASU_WINDOWS_SDK}" /usr/${asu_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)

# The SDK may lie elsewhere than where it was built. pkg-config must not see the host's libraries.
set(PKG_CONFIG_ARGN --define-prefix CACHE STRING "Arguments of pkg-config")
set(ENV{PKG_CONFIG_LIBDIR} "${ASU_WINDOWS_SDK}/lib/pkgconfig")

# The translation compiler is the host's. It has Qt's version but is no part of the SDK.
file(GLOB asu_linguist_tools /usr/lib/*/cmake/Qt5LinguistTools)
set(Qt5LinguistTools_DIR "${asu_linguist_tools}" CACHE PATH "The host's Qt5LinguistTools")

file(RELATIVE_PATH asu_relative_sdk "${CMAKE_BINARY_DIR}" "${ASU_WINDOWS_SDK}")
set_property(GLOBAL PROPERTY RULE_LAUNCH_LINK
    "\"${CMAKE_CURRENT_LIST_DIR}/link-relative\" \"${ASU_WINDOWS_SDK}\" \"${asu_relative_sdk}\"")

# CTest runs programs with it.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/under-wine;${CMAKE_BINARY_DIR};${ASU_WINDOWS_SDK}")
