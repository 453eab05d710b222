# Facts that are fixed when the program is built. The defaults are this build's values; each can be
# given on the command line.
set(ASU_VERSION_MAJOR 2 CACHE STRING "Major version")
set(ASU_VERSION_MINOR 17 CACHE STRING "Minor version, below 1000")
set(ASU_VERSION_REVISION 1 CACHE STRING "Revision, below 1000")
set(ASU_VERSION_BUILD 0 CACHE STRING "Build number, below 1000")
set(ASU_BUILD_TYPE release CACHE STRING "Build type: release, rc, beta or testing")
set_property(CACHE ASU_BUILD_TYPE PROPERTY STRINGS release rc beta testing)
set(ASU_GIT_COMMIT "" CACHE STRING "Source revision (40 hexadecimal digits); asked of git when empty")
set(ASU_ANALYTICS_HOST analytics.invalid CACHE STRING
    "Host of the analytics service, a port may follow; the default never resolves")

math(EXPR ASU_VERSION_NUMBER "${ASU_VERSION_MAJOR} * 1000000000 + ${ASU_VERSION_MINOR} * 1000000 \
+ ${ASU_VERSION_REVISION} * 1000 + ${ASU_VERSION_BUILD}")
set(ASU_VERSION "${ASU_VERSION_MAJOR}.${ASU_VERSION_MINOR}.${ASU_VERSION_REVISION}")

set(ASU_SOURCE_REVISION "${ASU_GIT_COMMIT}")
if(NOT ASU_SOURCE_REVISION)
    find_package(Git QUIET)
    if(GIT_FOUND)
        execute_process(COMMAND "${GIT_EXECUTABLE}" rev-parse HEAD
            WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
            OUTPUT_VARIABLE ASU_SOURCE_REVISION OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    endif()
endif()
if(NOT ASU_SOURCE_REVISION MATCHES "^[0-9a-f]+$")
    string(REPEAT "0" 40 ASU_SOURCE_REVISION)
endif()
