# SPDX-License-Identifier: LicenseRef-Proprietary
# Invalid facts of a build are errors.
#   cmake -DFACTS=…/BuildFacts.cmake -P buildfacts.cmake
cmake_minimum_required(VERSION 3.21)
if(DEFINED ROW)
    include("${FACTS}")
    return()
endif()
foreach(row VERSION_MAJOR=x VERSION_MINOR=1000 VERSION_BUILD=-1 GIT_COMMIT=ae1aed0 BUILD_TYPE=debug)
    execute_process(ERROR_VARIABLE error COMMAND "${CMAKE_COMMAND}" -DROW=1 "-DFACTS=${FACTS}"
        -DPROJECT_VERSION_MAJOR=2 -DPROJECT_VERSION_MINOR=17 -DPROJECT_VERSION_PATCH=1
        -DPROJECT_VERSION_TWEAK=0 "-DASU_${row}" -P "${CMAKE_CURRENT_LIST_FILE}")
    string(REPLACE "=" " is \"" expected "ASU_${row}\",")
    if(NOT error MATCHES "${expected}")
        message(SEND_ERROR "${row}: ${error}")
    endif()
endforeach()
