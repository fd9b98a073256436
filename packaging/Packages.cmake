# SPDX-License-Identifier: GPL-3.0-or-later
# Debian packages: kestrix is what runs, kestrix-dev what plug-ins are compiled with. scripts/package.sh makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kestrix)
set(CPACK_PACKAGE_VENDOR Norvane)
set(CPACK_PACKAGE_CONTACT "Norvane <${KESTRIX_ORGANIZATION_EMAIL}>")
set(CPACK_PACKAGE_HOMEPAGE_URL "${KESTRIX_ORGANIZATION_WEBSITE}")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")

# File names as the distribution has them; files belong to root with plain modes whoever builds.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUN_PACKAGE_NAME kestrix)
set(CPACK_DEBIAN_RUN_PACKAGE_SECTION science)
set(CPACK_COMPONENT_RUN_DESCRIPTION
    "measure magnetic fields with a three-axis instrument
Kestrix shows the magnetic field live with its uncertainty, as numbers,
over time, in a table, as a spectrum and per frequency band against
exposure limits. It maps fields with a probe that is moved from place to
place, records what the instrument delivers to an open file format and
replays it at any speed.
.
Instruments are reached through plug-ins. Simulated devices and an
instrument that replays recordings are included.")
# Libraries are found out from the executables. QML modules are loaded by name, and the plug-ins of Qt that draw SVG
# images and OpenGL in software by the toolkit: no executable tells of them.
set(CPACK_DEBIAN_RUN_PACKAGE_SHLIBDEPS ON)
set(qml_modules
    qml-module-qtqml
    qml-module-qtqml-models2
    qml-module-qtquick2
    qml-module-qtquick-window2
    qml-module-qtquick-layouts
    qml-module-qtquick-shapes
    qml-module-qtquick-controls
    qml-module-qtquick-controls2
    qml-module-qtquick-templates2
    qml-module-qtquick-dialogs
    qml-module-qtquick-privatewidgets
    qml-module-qtgraphicaleffects
    qml-module-qtcharts
    qml-module-qtdatavisualization
    qml-module-qt-labs-folderlistmodel
    qml-module-qt-labs-settings)
list(JOIN qml_modules ", " qml_modules)
set(CPACK_DEBIAN_RUN_PACKAGE_DEPENDS "${qml_modules}, libqt5svg5, libgl1-mesa-dri")
# Opening help pages, the version check's certificates, records known to file managers, native windows on Wayland.
set(CPACK_DEBIAN_RUN_PACKAGE_RECOMMENDS
    "xdg-utils, ca-certificates, shared-mime-info, desktop-file-utils, hicolor-icon-theme, qtwayland5, python3")
set(CPACK_DEBIAN_RUN_PACKAGE_SUGGESTS "kestrix-dev, www-browser")
# Packages of plug-ins find by "shlibs" which package holds the library that they link.
configure_file(debian/shlibs.in shlibs @ONLY)
set(CPACK_DEBIAN_RUN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_BINARY_DIR}/shlibs"
                                           "${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers")
if(UNIX AND NOT APPLE)
    configure_file(debian/changelog.in changelog @ONLY)
    execute_process(
        COMMAND "${KESTRIX_GZIP}" -9nc "${CMAKE_CURRENT_BINARY_DIR}/changelog"
        OUTPUT_FILE "${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz" COMMAND_ERROR_IS_FATAL ANY)
    set(changelog "${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz")
    install(FILES "${changelog}" DESTINATION "${doc_dir}/kestrix")
    install(FILES "${changelog}" DESTINATION "${doc_dir}/kestrix-dev" COMPONENT Development)
    install(FILES debian/kestrix.lintian-overrides DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides"
            RENAME kestrix)
    install(FILES debian/kestrix-dev.lintian-overrides DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides"
            RENAME kestrix-dev COMPONENT Development)
endif()

set(CPACK_DEBIAN_DEV_PACKAGE_NAME kestrix-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DESCRIPTION
    "headers and CMake package for plug-ins of Kestrix
Plug-ins let Kestrix reach instruments, devices that move a probe, and
sources of trigger events. This package holds the headers of the contract
with them, a CMake package that finds these, and examples to start from.")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "kestrix (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), libc6, qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "cmake, g++")

set(CPACK_COMPONENTS_ALL Program Library Development)
include(CPack)
cpack_add_component_group(run)
cpack_add_component_group(dev)
cpack_add_component(Program GROUP run REQUIRED)
cpack_add_component(Library GROUP run REQUIRED)
cpack_add_component(Development GROUP dev)
