# Debian packages, one for each component: cpack --config build/CPackConfig.cmake
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvikvi)
set(CPACK_PACKAGE_VENDOR "TarvikVI")
set(CPACK_PACKAGE_CONTACT "The TarvikVI maintainers <tarvikvi@localhost>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENTS_ALL automation runtime development simulator)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
# What a program or library needs of other packages is found out from the file; our own libraries are in the build.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")

set(TARVIK_NEEDS_AUTOMATION "libtarvikautomation (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_AUTOMATION_PACKAGE_NAME libtarvikautomation)
set(CPACK_COMPONENT_AUTOMATION_DESCRIPTION
  "Drivers of TarvikVI and their callers\n Finds and loads instrument drivers; needs no screen and no toolkit.")
set(CPACK_DEBIAN_AUTOMATION_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_AUTOMATION_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/debian/triggers")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME tarvikvi)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "Front panel for pulse generators\n Panel program and the library with the panel as an embeddable control.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "${TARVIK_NEEDS_AUTOMATION}, libqt6svg6")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "tarvikvi-simulator")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/debian/triggers")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtarvikvi-dev)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "Development files of the TarvikVI library\n Headers, CMake package and pkg-config files for hosts and drivers.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "tarvikvi (= ${PROJECT_VERSION}), qt6-base-dev")

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME tarvikvi-simulator)
set(CPACK_COMPONENT_SIMULATOR_DESCRIPTION
  "Simulated pulse generators for TarvikVI\n A driver without hardware: the instrument family as a simulation.")
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_DEPENDS "${TARVIK_NEEDS_AUTOMATION}")

if(TARGET tarvikdesigner)
  list(APPEND CPACK_COMPONENTS_ALL designer)
  set(CPACK_DEBIAN_DESIGNER_PACKAGE_NAME tarvikvi-designer)
  set(CPACK_COMPONENT_DESIGNER_DESCRIPTION
    "TarvikVI controls in the form designer\n A plug-in that offers the controls of the library to Qt Designer.")
  set(CPACK_DEBIAN_DESIGNER_PACKAGE_DEPENDS "tarvikvi (= ${PROJECT_VERSION})")
endif()

if(TARGET tarvikremote)
  list(APPEND CPACK_COMPONENTS_ALL remote server)
  set(CPACK_DEBIAN_REMOTE_PACKAGE_NAME tarvikvi-remote)
  set(CPACK_COMPONENT_REMOTE_DESCRIPTION
    "Instruments on another machine for TarvikVI\n What TarvikVI needs to reach the drivers that a driver server offers.")
  set(CPACK_DEBIAN_REMOTE_PACKAGE_DEPENDS "${TARVIK_NEEDS_AUTOMATION}")

  set(CPACK_DEBIAN_SERVER_PACKAGE_NAME tarvikvi-server)
  set(CPACK_COMPONENT_SERVER_DESCRIPTION
    "Server for instrument drivers of TarvikVI\n Offers the drivers of this machine to named clients on the network.")
  set(CPACK_DEBIAN_SERVER_PACKAGE_SECTION net)
  set(CPACK_DEBIAN_SERVER_PACKAGE_DEPENDS "${TARVIK_NEEDS_AUTOMATION}")
  set(CPACK_DEBIAN_SERVER_PACKAGE_SUGGESTS "openssl, tarvikvi-simulator")
  set(CPACK_DEBIAN_SERVER_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/debian/server/postinst"
    "${CMAKE_CURRENT_LIST_DIR}/debian/server/prerm" "${CMAKE_CURRENT_LIST_DIR}/debian/server/postrm")
  set(CPACK_DEBIAN_SERVER_PACKAGE_CONTROL_STRICT_PERMISSION ON)
endif()

include(CPack)
