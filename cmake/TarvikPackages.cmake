# Debian packages, one for each component: cpack --config build/CPackConfig.cmake -B packages
set(TARVIK_PACKAGE_CONTACT "TarvikVI maintainers <maintainers@tarvikvi.example>" CACHE STRING
  "Who is asked about the packages; stands in each of them")
set(TARVIK_DEBIAN_FOLDER "${CMAKE_CURRENT_LIST_DIR}/debian")

# The changelog of the packages tells their revision.
file(STRINGS "${TARVIK_DEBIAN_FOLDER}/changelog" TARVIK_NEWEST LIMIT_COUNT 1)
string(REGEX REPLACE "^tarvikvi \\((.*)\\) .*" "\\1" TARVIK_PACKAGE_VERSION "${TARVIK_NEWEST}")
if(NOT TARVIK_PACKAGE_VERSION MATCHES "^${PROJECT_VERSION}-([0-9]+)$")
  message(FATAL_ERROR "cmake/debian/changelog begins with ${TARVIK_PACKAGE_VERSION}, the version is ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE "${CMAKE_MATCH_1}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvikvi)
set(CPACK_PACKAGE_VENDOR "TarvikVI")
set(CPACK_PACKAGE_CONTACT "${TARVIK_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
# What a program or library needs of other packages is found out from the file; our own libraries are in the build.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_PROJECT_CONFIG_FILE "${TARVIK_DEBIAN_FOLDER}/BeginPackages.cmake")
set(CPACK_PRE_BUILD_SCRIPTS "${TARVIK_DEBIAN_FOLDER}/DocumentPackages.cmake")
set(CPACK_TARVIK_DEBIAN_FOLDER "${TARVIK_DEBIAN_FOLDER}")
set(CPACK_TARVIK_CHANGES "${CMAKE_SOURCE_DIR}/CHANGELOG.md")
get_property(CPACK_TARVIK_LEFT_OUT GLOBAL PROPERTY TARVIK_LEFT_OUT)
# Behind the last file an install writes a list of its files into the build folder. Packages have theirs within.
install(CODE "if(DEFINED ENV{TARVIK_PACKAGING})
    return()
  endif()" ALL_COMPONENTS)

# tarvik_package(COMPONENT NAME SUMMARY TEXT [FIELD value]...): the fields are those of cpack, as SECTION or DEPENDS.
macro(tarvik_package component name summary text)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  string(TOUPPER ${component} TARVIK_COMPONENT)
  set(CPACK_DEBIAN_${TARVIK_COMPONENT}_PACKAGE_NAME ${name})
  set(CPACK_COMPONENT_${TARVIK_COMPONENT}_DESCRIPTION "${summary}\n ${text}")
  set(TARVIK_FIELDS ${ARGN})
  while(TARVIK_FIELDS)
    list(POP_FRONT TARVIK_FIELDS TARVIK_FIELD TARVIK_VALUE)
    set(CPACK_DEBIAN_${TARVIK_COMPONENT}_PACKAGE_${TARVIK_FIELD} "${TARVIK_VALUE}")
  endwhile()
endmacro()

# tarvik_shared_library(COMPONENT LIBRARY PACKAGE): what makes a package one of a shared library: the linker's index is
# renewed, and packages that use the library learn which package has it.
macro(tarvik_shared_library component library package)
  string(TOUPPER ${component} TARVIK_COMPONENT)
  file(WRITE "${CMAKE_BINARY_DIR}/install/${component}/shlibs"
    "${library} ${PROJECT_VERSION_MAJOR} ${package} (>= ${PROJECT_VERSION})\n")
  set(CPACK_DEBIAN_${TARVIK_COMPONENT}_PACKAGE_CONTROL_EXTRA
    "${TARVIK_DEBIAN_FOLDER}/triggers" "${CMAKE_BINARY_DIR}/install/${component}/shlibs")
endmacro()

set(same "(= ${TARVIK_PACKAGE_VERSION})")
tarvik_package(automation libtarvikautomation1 "Drivers of TarvikVI and their callers"
  "Finds and loads instrument drivers; needs no screen and no toolkit." SECTION libs)
tarvik_shared_library(automation libtarvikautomation libtarvikautomation1)
tarvik_package(automation_development libtarvikautomation-dev "Development files for drivers of TarvikVI"
  "Driver contract, headers, CMake package and pkg-config file; needs no toolkit."
  SECTION libdevel DEPENDS "libtarvikautomation1 ${same}")
tarvik_package(library libtarvikvi1 "Panel for pulse generators as a library"
  "The panel as an embeddable control, its parts, and the instrument interface."
  SECTION libs DEPENDS "libtarvikautomation1 ${same}" RECOMMENDS tarvikvi-simulator)
tarvik_shared_library(library libtarvikvi libtarvikvi1)
tarvik_package(runtime tarvikvi "Front panel for pulse generators"
  "A window with the panel for pulse generators with one or two channels."
  DEPENDS "libtarvikvi1 ${same}, libtarvikautomation1 ${same}, libqt6svg6" RECOMMENDS tarvikvi-simulator)
tarvik_package(ctl tarvikctl "Settings of pulse generators from the command line"
  "Reads, changes, saves and compares all settings of an instrument; needs no screen."
  DEPENDS "libtarvikautomation1 ${same}" RECOMMENDS tarvikvi-simulator SUGGESTS tarvikvi-remote)
if(TARGET tarvikvi_core)
  tarvik_package(python python3-tarvikvi "Settings of pulse generators from Python"
    "Reads, changes, saves and compares settings of an instrument in scripts and notebooks."
    SECTION python DEPENDS "libtarvikautomation1 ${same}, python3 (>= 3.11), python3 (<< 3.12)"
    RECOMMENDS "tarvikvi-simulator, python3-numpy" SUGGESTS tarvikvi-remote)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    "${TARVIK_DEBIAN_FOLDER}/python/postinst" "${TARVIK_DEBIAN_FOLDER}/python/prerm")
endif()
tarvik_package(development libtarvikvi-dev "Development files of the TarvikVI library"
  "Headers, CMake package, pkg-config file, documents and examples for hosts."
  SECTION libdevel DEPENDS "libtarvikvi1 ${same}, libtarvikautomation-dev ${same}, qt6-base-dev"
  SUGGESTS tarvikvi-designer)
tarvik_package(simulator tarvikvi-simulator "Simulated pulse generators for TarvikVI"
  "A driver without hardware: the instrument family as a simulation." DEPENDS "libtarvikautomation1 ${same}")
tarvik_package(scpi tarvikvi-scpi "Pulse generators that speak SCPI for TarvikVI"
  "A driver for them, with profiles and a simulated instrument on a socket." DEPENDS "libtarvikautomation1 ${same}")
if(TARVIK_DESIGNER)
  tarvik_package(designer tarvikvi-designer "TarvikVI controls in the form designer"
    "A plug-in that offers the controls of the library to Qt Designer." DEPENDS "libtarvikvi1 ${same}")
endif()
if(TARVIK_REMOTE)
  tarvik_package(remote tarvikvi-remote "Instruments on another machine for TarvikVI"
    "What TarvikVI needs to reach the drivers that a driver server offers." DEPENDS "libtarvikautomation1 ${same}")
  tarvik_package(server tarvikvi-server "Server for instrument drivers of TarvikVI"
    "Offers the drivers of this machine to named clients on the network."
    SECTION net DEPENDS "libtarvikautomation1 ${same}" SUGGESTS "openssl, tarvikvi-simulator")
  set(CPACK_DEBIAN_SERVER_PACKAGE_CONTROL_EXTRA "${TARVIK_DEBIAN_FOLDER}/server/postinst"
    "${TARVIK_DEBIAN_FOLDER}/server/prerm" "${TARVIK_DEBIAN_FOLDER}/server/postrm")
endif()

include(CPack)
