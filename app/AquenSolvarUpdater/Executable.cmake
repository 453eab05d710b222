# The user interface is a library, so that tests load the very documents that the executable shows.
find_package(Qt5 5.9 REQUIRED COMPONENTS Gui LinguistTools Widgets Qml Quick Svg)

# Underscore.js, unmodified, as a QML module: the library itself comes from the system.
find_file(UNDERSCORE_JS underscore-umd.js underscore.js
    PATHS /usr/share/javascript/underscore DOC "Underscore.js, not minified" REQUIRED)
set(underscore "${CMAKE_CURRENT_BINARY_DIR}/UnderscoreQML")
foreach(file qmldir Underscore.js UnderscoreQML.qrc)
    configure_file("UnderscoreQML/${file}" "${underscore}/${file}" COPYONLY)
endforeach()
configure_file("${UNDERSCORE_JS}" "${underscore}/underscore-umd.js" COPYONLY)

# An open font stands in under the names that FontHelper loads.
set(fonts "${CMAKE_CURRENT_BINARY_DIR}/fonts")
configure_file(fonts/AquenSolvarFonts.qrc "${fonts}/AquenSolvarFonts.qrc" COPYONLY)
foreach(style Regular Bold)
    find_file(OPEN_SANS_${style} OpenSans-${style}.ttf
        PATHS /usr/share/fonts/truetype/open-sans DOC "Open Sans, ${style}" REQUIRED)
    configure_file("${OPEN_SANS_${style}}" "${fonts}/OpenSans-${style}.ttf" COPYONLY)
endforeach()

# The user interface's languages besides English; scripts/check-translations keeps them complete.
set(languages de es fr it ja ko pt_BR zh_CN)
list(TRANSFORM languages PREPEND translations/AquenSolvarUpdater_ OUTPUT_VARIABLE ts_files)
list(TRANSFORM ts_files APPEND .ts)
set(translations "${CMAKE_CURRENT_BINARY_DIR}/translations")
set_source_files_properties(${ts_files} PROPERTIES OUTPUT_LOCATION "${translations}")
qt5_add_translation(qm_files ${ts_files})
configure_file(translations/AquenSolvarTranslations.qrc
    "${translations}/AquenSolvarTranslations.qrc" COPYONLY)

add_library(AquenSolvarUi STATIC
    src/Translation.cpp src/Translation.h
    src/UserInterface.cpp src/UserInterface.h
    icons/AquenSolvarIcons.qrc
    qml/AquenSolvarQml.qrc
    "${fonts}/AquenSolvarFonts.qrc"
    "${translations}/AquenSolvarTranslations.qrc" ${qm_files}
    "${underscore}/UnderscoreQML.qrc")
target_include_directories(AquenSolvarUi PUBLIC src)
target_link_libraries(AquenSolvarUi PUBLIC AquenSolvarApp Qt5::Qml
                                    PRIVATE Common USB qslog Qt5::Quick project_options)

# qt.conf is compiled into the executable alone: whatever holds it looks for Qt's plugins and QML
# modules beside itself.
add_executable(AquenSolvarUpdater src/AquenSolvarUpdater_main.cpp qt/QtConf.qrc)
target_link_libraries(AquenSolvarUpdater PRIVATE AquenSolvarUi Common qslog Qt5::Widgets project_options)
set_target_properties(AquenSolvarUpdater PROPERTIES WIN32_EXECUTABLE ON)

# The files beside the executable, the same in the build tree and installed. The firmware bundles
# are added by whoever ships the program.
set(beside "${CMAKE_CURRENT_BINARY_DIR}")
foreach(file Settings/Logging.ini Firmwares/README.txt)
    configure_file("Resources/${file}" "${beside}/Resources/${file}" COPYONLY)
endforeach()

set(ASU_INSTALL_DIRECTORY lib/aquen-solvar-updater)
install(TARGETS AquenSolvarUpdater DESTINATION ${ASU_INSTALL_DIRECTORY})
install(DIRECTORY Resources DESTINATION ${ASU_INSTALL_DIRECTORY})

# qt.conf sends Qt to links beside the executable; on Windows the deployment puts folders there.
if(NOT WIN32)
    get_target_property(qmake Qt5::qmake IMPORTED_LOCATION)
    foreach(variable QT_INSTALL_PLUGINS QT_INSTALL_QML)
        execute_process(COMMAND "${qmake}" -query ${variable} OUTPUT_VARIABLE ${variable}
            OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    file(CREATE_LINK "${QT_INSTALL_PLUGINS}" "${beside}/plugins" SYMBOLIC)
    file(CREATE_LINK "${QT_INSTALL_QML}" "${beside}/Resources/qml" SYMBOLIC)
    install(FILES "${beside}/plugins" DESTINATION ${ASU_INSTALL_DIRECTORY})
    install(FILES "${beside}/Resources/qml" DESTINATION ${ASU_INSTALL_DIRECTORY}/Resources)

    file(MAKE_DIRECTORY "${beside}/bin")
    file(CREATE_LINK ../${ASU_INSTALL_DIRECTORY}/AquenSolvarUpdater
        "${beside}/bin/AquenSolvarUpdater" SYMBOLIC)
    install(FILES "${beside}/bin/AquenSolvarUpdater" DESTINATION bin)
endif()
