# The Debian package, made by "cpack". scripts/make-package sets the time and builds from scratch.
set(ASU_PACKAGE_CONTACT "Quillon <support@quillon.invalid>" CACHE STRING
    "Maintainer of the package: NAME <ADDRESS>. The default never resolves")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME aquen-solvar-updater)
set(CPACK_PACKAGE_VERSION "${ASU_VERSION}")
set(CPACK_PACKAGE_CONTACT "${ASU_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION non-free/utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "firmware updater for Aquen washing and Solvar curing units")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Lists the washing units (Aquen) and curing units (Solvar) that are attached
by USB, says which need an update, and writes new firmware into them over USB
DFU with its DfuSe extensions. An interrupted update can be resumed.
.
A udev rule lets the logged-in user access the units. Also contains
tarnware, which makes and checks firmware bundles; bundles themselves are not
part of this package.")

# What the program links is found by dpkg-shlibdeps; what it loads at run time is listed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
string(JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS
    libqt5svg5 qml-module-qtquick2 qml-module-qtquick-window2 qml-module-qtquick-layouts
    qml-module-qtquick-controls qml-module-qtqml-statemachine qml-module-qtgraphicaleffects)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS udev)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qtwayland5, fonts-noto-cjk")

set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst"
    "${CMAKE_CURRENT_SOURCE_DIR}/debian/postrm")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# For the two scripts that cpack runs.
set(CPACK_ASU_SOURCE_DATE "${ASU_SOURCE_DATE}")
set(CPACK_ASU_DEBIAN_FILES "${CMAKE_CURRENT_SOURCE_DIR}/debian")
set(CPACK_ASU_CHANGELOG "${CMAKE_SOURCE_DIR}/CHANGELOG.md")
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_CURRENT_SOURCE_DIR}/debian/SetDate.cmake")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_SOURCE_DIR}/debian/StagePackage.cmake")
include(CPack)
