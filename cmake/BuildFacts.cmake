# SPDX-License-Identifier: LicenseRef-Proprietary
# Facts that are fixed when the program is built. Each can be set on the command line. ASU_ stands
# for Aquen/Solvar Updater. The version's defaults come from project().
set(ASU_VERSION_MAJOR "${PROJECT_VERSION_MAJOR}" CACHE STRING "Major version")
set(ASU_VERSION_MINOR "${PROJECT_VERSION_MINOR}" CACHE STRING "Minor version, below 1000")
set(ASU_VERSION_REVISION "${PROJECT_VERSION_PATCH}" CACHE STRING "Revision, below 1000")
set(ASU_VERSION_BUILD "${PROJECT_VERSION_TWEAK}" CACHE STRING "Build number, below 1000")
set(ASU_BUILD_TYPE release CACHE STRING "Build type: release, rc, beta or testing")
set_property(CACHE ASU_BUILD_TYPE PROPERTY STRINGS release rc beta testing)
set(ASU_SOURCES_DIRECTORY "${CMAKE_SOURCE_DIR}" CACHE STRING
    "Path recorded for the source tree; any other than its own keeps the real one out of the build")
set(ASU_GIT_COMMIT "" CACHE STRING "Source revision (40 hexadecimal digits); taken from git if empty")
set(ASU_ANALYTICS_HOST analytics.invalid CACHE STRING
    "Host of the analytics service, with an optional port; the default never resolves")

math(EXPR ASU_VERSION_NUMBER "${ASU_VERSION_MAJOR} * 1000000000 + ${ASU_VERSION_MINOR} * 1000000 \
+ ${ASU_VERSION_REVISION} * 1000 + ${ASU_VERSION_BUILD}")
set(ASU_VERSION "${ASU_VERSION_MAJOR}.${ASU_VERSION_MINOR}.${ASU_VERSION_REVISION}")

find_package(Git QUIET)
set(ASU_SOURCE_REVISION "${ASU_GIT_COMMIT}")
if(NOT ASU_SOURCE_REVISION AND GIT_FOUND)
    execute_process(COMMAND "${GIT_EXECUTABLE}" rev-parse HEAD
        WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
        OUTPUT_VARIABLE ASU_SOURCE_REVISION OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(NOT ASU_SOURCE_REVISION MATCHES "^[0-9a-f]+$")
    string(REPEAT "0" 40 ASU_SOURCE_REVISION)
endif()

# The recorded date of the build in seconds since 1970: SOURCE_DATE_EPOCH, or that of the commit, or
# now.
set(ASU_SOURCE_DATE "$ENV{SOURCE_DATE_EPOCH}")
if(NOT ASU_SOURCE_DATE AND GIT_FOUND)
    execute_process(COMMAND "${GIT_EXECUTABLE}" log -1 --format=%ct
        WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
        OUTPUT_VARIABLE ASU_SOURCE_DATE OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(NOT ASU_SOURCE_DATE MATCHES "^[0-9]+$")
    string(TIMESTAMP ASU_SOURCE_DATE %s UTC)
endif()

# Paths recorded by the compiler (__FILE__, debug information) change accordingly.
if(NOT ASU_SOURCES_DIRECTORY STREQUAL CMAKE_SOURCE_DIR)
    add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}=${ASU_SOURCES_DIRECTORY}"
                        "-ffile-prefix-map=${CMAKE_BINARY_DIR}=${ASU_SOURCES_DIRECTORY}/build")
    # A compiler cache with a base directory would make them relative.
    if(CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache$")
        list(PREPEND CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_BASEDIR=)
    endif()
endif()
