# SPDX-License-Identifier: LicenseRef-Proprietary
# asu_add_folder(NAME SOURCES file… [PUBLIC target…] [PRIVATE target…] [NO_MOC] [SHARED])
# The library of one source folder, which is the current one. Its headers are included as
# "NAME/Header.h", and only targets that link it can include them: each library has its own include
# directory, which holds one link to the folder. PUBLIC and PRIVATE list what it links. It is a static
# library unless it is SHARED.
function(asu_add_folder name)
    cmake_parse_arguments(F "NO_MOC;SHARED" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    set(kind STATIC)
    if(F_SHARED)
        set(kind SHARED)
    endif()
    add_library(${name} ${kind} ${F_SOURCES})
    set(view "${CMAKE_BINARY_DIR}/include/${name}")
    file(MAKE_DIRECTORY "${view}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${view}/${name}" SYMBOLIC)
    target_include_directories(${name} PUBLIC "${view}")
    target_link_libraries(${name} PUBLIC ${F_PUBLIC} PRIVATE ${F_PRIVATE} project_options)
    if(F_NO_MOC)
        set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    endif()
endfunction()
