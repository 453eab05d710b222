# SPDX-License-Identifier: LicenseRef-Proprietary
# Options and compiler settings that all of the project's own targets share.
include(CTest)
include(GNUInstallDirs)

option(ASU_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(ASU_COVERAGE "Instrument for coverage" OFF)
option(ASU_SIMULATOR "Build the virtual units even without the tests" ON)
option(ASU_BENCHMARKS "Build the benchmarks" OFF)
option(ASU_FUZZERS "Build the fuzz targets (clang)" OFF)
set(ASU_SANITIZE "" CACHE STRING "Sanitizers, as for -fsanitize= (for example address,undefined)")

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
if(WIN32)
    # Without the times of the resources' files, which differ in each checkout.
    set(CMAKE_AUTORCC_OPTIONS --format-version 1)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

include(Hardening)
if(ASU_SANITIZE)
    add_compile_options(-fsanitize=${ASU_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ASU_SANITIZE})
endif()
if(ASU_COVERAGE)
    add_compile_options(--coverage -O0)
    add_link_options(--coverage)
endif()

# Linked PRIVATE by each of the project's targets: warnings and the Qt API level.
add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE -Wall -Wextra -Wconversion -Wshadow
                                                 -Wnon-virtual-dtor -Woverloaded-virtual)
if(ASU_WARNINGS_AS_ERRORS)
    target_compile_options(project_options INTERFACE -Werror)
endif()
target_compile_definitions(project_options INTERFACE QT_NO_CAST_TO_ASCII
                                                     QT_DEPRECATED_WARNINGS)
