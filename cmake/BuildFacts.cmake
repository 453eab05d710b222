# Facts that are fixed when the program is built. The defaults are this build's values; each can be
# given on the command line.
set(ASU_VERSION_MAJOR 2 CACHE STRING "Major version")
set(ASU_VERSION_MINOR 17 CACHE STRING "Minor version, below 1000")
set(ASU_VERSION_REVISION 1 CACHE STRING "Revision, below 1000")
set(ASU_VERSION_BUILD 0 CACHE STRING "Build number, below 1000")
set(ASU_BUILD_TYPE release CACHE STRING "Build type: release, rc, beta or testing")
set_property(CACHE ASU_BUILD_TYPE PROPERTY STRINGS release rc beta testing)
set(ASU_SOURCES_DIRECTORY "${CMAKE_SOURCE_DIR}" CACHE STRING
    "Where the source tree is said to lie: another path than its own keeps that one out of the build")
set(ASU_GIT_COMMIT "" CACHE STRING "Source revision (40 hexadecimal digits); asked of git when empty")
set(ASU_ANALYTICS_HOST analytics.invalid CACHE STRING
    "Host of the analytics service, a port may follow; the default never resolves")

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

# The date that the build is said to have, in seconds since 1970: that of its commit, unless the
# environment sets it.
set(ASU_SOURCE_DATE "$ENV{SOURCE_DATE_EPOCH}")
if(NOT ASU_SOURCE_DATE AND GIT_FOUND)
    execute_process(COMMAND "${GIT_EXECUTABLE}" log -1 --format=%ct
        WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
        OUTPUT_VARIABLE ASU_SOURCE_DATE OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(NOT ASU_SOURCE_DATE MATCHES "^[0-9]+$")
    string(TIMESTAMP ASU_SOURCE_DATE %s UTC)
endif()

# Paths that the compiler records (__FILE__, debug information) follow.
if(NOT ASU_SOURCES_DIRECTORY STREQUAL CMAKE_SOURCE_DIR)
    add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}=${ASU_SOURCES_DIRECTORY}"
                        "-ffile-prefix-map=${CMAKE_BINARY_DIR}=${ASU_SOURCES_DIRECTORY}/build")
endif()
