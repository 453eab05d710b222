# SPDX-License-Identifier: LicenseRef-Proprietary
# Run by cpack on the installed tree before it is packed: what only a Debian package needs.
set(tree "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGV}")
    endif()
endfunction()

cmake_policy(SET CMP0009 NEW) # no search through links
set(documents "${tree}/usr/share/doc/${CPACK_PACKAGE_NAME}")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # by SOURCE_DATE_EPOCH, from SetDate.cmake
run("${CPACK_ASU_DEBIAN_FILES}/changelog-from-markdown" "${CPACK_ASU_CHANGELOG}" "${CPACK_PACKAGE_NAME}"
    "${CPACK_PACKAGE_VERSION}" "${CPACK_PACKAGE_CONTACT}" "${date}"
    "${documents}/changelog")
run(gzip -9nf "${documents}/changelog")

# In a package, links within /usr are relative; in a tree that can be moved they cannot be.
file(GLOB_RECURSE paths LIST_DIRECTORIES true "${tree}/*")
foreach(path IN LISTS paths)
    if(IS_SYMLINK "${path}")
        file(READ_SYMLINK "${path}" target)
        if(target MATCHES "^/usr/")
            get_filename_component(directory "${path}" DIRECTORY)
            file(RELATIVE_PATH target "${directory}" "${tree}${target}")
            file(CREATE_LINK "${target}" "${path}" SYMBOLIC)
        endif()
    endif()
endforeach()

run(find "${tree}" -exec touch -h -d "@${CPACK_ASU_SOURCE_DATE}" {} +)
