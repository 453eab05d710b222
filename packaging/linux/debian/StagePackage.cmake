# Run by cpack on the installed tree before it is packed: what Debian alone wants.
set(tree "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGV}")
    endif()
endfunction()

cmake_policy(SET CMP0009 NEW) # no search through links
set(documents "${tree}/usr/share/doc/${CPACK_PACKAGE_NAME}")
run("${CPACK_ASU_DEBIAN_FILES}/changelog-from-markdown" "${CPACK_ASU_CHANGELOG}" "${CPACK_PACKAGE_NAME}"
    "${CPACK_PACKAGE_VERSION}" "${CPACK_PACKAGE_CONTACT}" "${CPACK_ASU_SOURCE_DATE}"
    "${documents}/changelog")
run(gzip -9nf "${documents}/changelog")

# Links that stay within /usr are relative in a package; in a tree that can be moved they cannot be.
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
