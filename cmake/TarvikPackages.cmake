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
set(CPACK_COMPONENTS_ALL runtime development simulator)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME tarvikvi)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "Front panel for pulse generators\n Panel program and the library with the panel as an embeddable control.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libqt6svg6")
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
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_DEPENDS "tarvikvi (= ${PROJECT_VERSION}), libstdc++6")

if(TARGET tarvikdesigner)
  list(APPEND CPACK_COMPONENTS_ALL designer)
  set(CPACK_DEBIAN_DESIGNER_PACKAGE_NAME tarvikvi-designer)
  set(CPACK_COMPONENT_DESIGNER_DESCRIPTION
    "TarvikVI controls in the form designer\n A plug-in that offers the controls of the library to Qt Designer.")
  set(CPACK_DEBIAN_DESIGNER_PACKAGE_DEPENDS "tarvikvi (= ${PROJECT_VERSION}), libqt6designer6")
endif()

include(CPack)
