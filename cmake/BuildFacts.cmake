# SPDX-License-Identifier: LicenseRef-Proprietary
# Facts that are fixed when the program is built. Each can be set on the command line. ASU_ stands
# for Aquen/Solvar Updater.
set(ASU_BUILD_TYPE release CACHE STRING "Build type: release, rc, beta or testing")
set_property(CACHE ASU_BUILD_TYPE PROPERTY STRINGS release rc beta testing)
if(NOT ASU_BUILD_TYPE MATCHES "^(release|rc|beta|testing)$")
    message(FATAL_ERROR "ASU_BUILD_TYPE is \"${ASU_BUILD_TYPE}\", not release, rc, beta or testing")
endif()
set(ASU_SOURCES_DIRECTORY "${CMAKE_SOURCE_DIR}" CACHE STRING
    "Path recorded for the source tree; any other than its own keeps the real one out of the build")
set(ASU_ANALYTICS_HOST analytics.invalid CACHE STRING
    "Host of the analytics service, with an optional port; the default never resolves")

# The version number has three decimal digits for each part but the first.
set(version_parts MAJOR MINOR REVISION BUILD)
set(version_defaults MAJOR MINOR PATCH TWEAK)
set(version_limits 999999999 999 999 999)
set(ASU_VERSION_NUMBER 0)
foreach(part default limit IN ZIP_LISTS version_parts version_defaults version_limits)
    set(ASU_VERSION_${part} "" CACHE STRING "This part of the version; that of project() if empty")
    set(version_${part} "${ASU_VERSION_${part}}")
    if(version_${part} STREQUAL "")
        set(version_${part} "${PROJECT_VERSION_${default}}")
    endif()
    if(NOT version_${part} MATCHES "^(0|[1-9][0-9]*)$" OR version_${part} GREATER limit)
        message(FATAL_ERROR "ASU_VERSION_${part} is \"${version_${part}}\", not a whole number from 0 to ${limit}")
    endif()
    math(EXPR ASU_VERSION_NUMBER "${ASU_VERSION_NUMBER} * 1000 + ${version_${part}}")
endforeach()
set(ASU_VERSION "${version_MAJOR}.${version_MINOR}.${version_REVISION}")

find_package(Git QUIET)
set(ASU_GIT_COMMIT "" CACHE STRING "Source revision (40 hexadecimal digits); that of git if empty")
string(REPEAT "[0-9a-f]" 40 revision_pattern)
if(NOT ASU_GIT_COMMIT MATCHES "^(${revision_pattern})?$")
    message(FATAL_ERROR "ASU_GIT_COMMIT is \"${ASU_GIT_COMMIT}\", not 40 hexadecimal digits in lower case")
endif()

# The recorded date of the build in seconds since 1970: SOURCE_DATE_EPOCH, or that of the commit, or
# now.
set(ASU_SOURCE_DATE "$ENV{SOURCE_DATE_EPOCH}")
if(NOT ASU_SOURCE_DATE MATCHES "^[0-9]*$")
    message(FATAL_ERROR "SOURCE_DATE_EPOCH is \"${ASU_SOURCE_DATE}\", not a number of seconds")
endif()
if(ASU_SOURCE_DATE STREQUAL "" AND GIT_FOUND)
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
