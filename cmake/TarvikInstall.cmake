# What is installed where. The components are automation, automation_development, library, runtime, ctl, development,
# python, simulator, scpi, designer, remote and server; each is a package as well (TarvikPackages.cmake).
include(CMakePackageConfigHelpers)

set(TARVIK_INCLUDE_FOLDER "${CMAKE_INSTALL_INCLUDEDIR}/tarvikvi")
set(TARVIK_CMAKE_FOLDER "${CMAKE_INSTALL_LIBDIR}/cmake/TarvikVI")
set(TARVIK_DRIVER_FOLDER "${CMAKE_INSTALL_LIBDIR}/tarvikvi")
set(TARVIK_MANIFEST_FOLDER "${CMAKE_INSTALL_DATADIR}/tarvikvi/drivers")
# One folder for all packages, so that the documents find one another.
set(TARVIK_DOCUMENT_FOLDER "${CMAKE_INSTALL_DATADIR}/doc/tarvikvi")

# tarvik_install_documents(COMPONENT document...): from docs.
function(tarvik_install_documents component)
  foreach(document ${ARGN})
    install(FILES "${CMAKE_SOURCE_DIR}/docs/${document}" DESTINATION "${TARVIK_DOCUMENT_FOLDER}" COMPONENT ${component})
  endforeach()
endfunction()

# tarvik_install_examples(COMPONENT example...): from examples.
function(tarvik_install_examples component)
  foreach(example ${ARGN})
    install(DIRECTORY "${CMAKE_SOURCE_DIR}/examples/${example}" DESTINATION "${TARVIK_DOCUMENT_FOLDER}/examples"
      COMPONENT ${component})
  endforeach()
endfunction()

# tarvik_install_headers(COMPONENT header...): in the rooms of the source.
function(tarvik_install_headers component)
  foreach(header ${ARGN})
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${CMAKE_SOURCE_DIR}/src/${header}" DESTINATION "${TARVIK_INCLUDE_FOLDER}/${folder}"
      COMPONENT ${component})
  endforeach()
endfunction()

# tarvik_install_pkgconfig(COMPONENT module): paths within the file are relative to it, so that it serves any prefix.
file(RELATIVE_PATH TARVIK_PREFIX_FROM_PKGCONFIG "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
function(tarvik_install_pkgconfig component module)
  configure_file("${CMAKE_SOURCE_DIR}/cmake/${module}.pc.in" "${CMAKE_BINARY_DIR}/install/${module}.pc" @ONLY)
  install(FILES "${CMAKE_BINARY_DIR}/install/${module}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT ${component})
endfunction()

# tarvik_install_manifest(COMPONENT MANIFEST FOLDER FILE): in the data folder, or in a folder of it that the manifest
# names, with the way to the library.
function(tarvik_install_manifest component manifest folder file)
  cmake_path(GET manifest PARENT_PATH below)
  cmake_path(APPEND TARVIK_MANIFEST_FOLDER "${below}" OUTPUT_VARIABLE place)
  string(REGEX REPLACE "/$" "" place "${place}")
  file(RELATIVE_PATH way "/prefix/${place}" "/prefix/${folder}")
  file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/install/${manifest}" CONTENT "${way}/${file}\n")
  install(FILES "${CMAKE_BINARY_DIR}/install/${manifest}" DESTINATION "${place}" COMPONENT ${component})
endfunction()

# tarvik_install_driver(COMPONENT MANIFEST TARGET): a library that is loaded by name stands in a folder of its own, out of
# the linker's sight.
function(tarvik_install_driver component manifest target)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "\$ORIGIN/..")
  install(TARGETS ${target} LIBRARY DESTINATION "${TARVIK_DRIVER_FOLDER}" COMPONENT ${component})
  tarvik_install_manifest(${component} ${manifest} "${TARVIK_DRIVER_FOLDER}" "$<TARGET_FILE_NAME:${target}>")
endfunction()

# The libraries find one another wherever the prefix goes.
set_target_properties(tarvikautomation tarvikvi_lib PROPERTIES INSTALL_RPATH "\$ORIGIN")
file(RELATIVE_PATH TARVIK_LIBRARIES_FROM_PROGRAMS
  "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_LIBDIR}")

# ---- automation: what drivers and their callers share, which a machine without a screen needs as well
target_include_directories(tarvikautomation INTERFACE $<INSTALL_INTERFACE:${TARVIK_INCLUDE_FOLDER}>)
target_compile_features(tarvikautomation INTERFACE cxx_std_20)
install(TARGETS tarvikautomation EXPORT TarvikVIAutomationTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT automation NAMELINK_COMPONENT automation_development)

# ---- automation_development: what a driver is written with; nothing in it needs the toolkit
tarvik_install_headers(automation_development
  automation/Abi.h automation/Activation.h automation/AutomationArray.h automation/AutomationString.h
  automation/ClassFactory.h automation/ErrorInfo.h automation/Object.h automation/Ref.h
  instrument/KolvenDriver.h instrument/Vocabulary.h instrument/viInfo.h
  support/DynamicArray.h support/Export.h support/RunTimeError.h support/Types.h)
install(FILES "${TARVIK_DRIVER_OBJECTS}" DESTINATION "${TARVIK_INCLUDE_FOLDER}/instrument"
  COMPONENT automation_development)
install(EXPORT TarvikVIAutomationTargets NAMESPACE TarvikVI:: DESTINATION "${TARVIK_CMAKE_FOLDER}"
  COMPONENT automation_development)
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/TarvikVIConfig.cmake.in"
  "${CMAKE_BINARY_DIR}/install/TarvikVIConfig.cmake" INSTALL_DESTINATION "${TARVIK_CMAKE_FOLDER}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/install/TarvikVIConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/install/TarvikVIConfig.cmake"
  "${CMAKE_BINARY_DIR}/install/TarvikVIConfigVersion.cmake" DESTINATION "${TARVIK_CMAKE_FOLDER}"
  COMPONENT automation_development)
tarvik_install_pkgconfig(automation_development tarvikautomation)
tarvik_install_documents(automation_development driver-authors-guide.md)
tarvik_install_examples(automation_development driver)

# ---- library: the panel and the instrument interface, for hosts; clients create the interface by name
install(TARGETS tarvikvi_lib EXPORT TarvikVITargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library NAMELINK_COMPONENT development)
tarvik_install_manifest(library TarvikVI.clsInstrInterface.driver "${CMAKE_INSTALL_LIBDIR}"
  "$<TARGET_SONAME_FILE_NAME:tarvikvi_lib>")

# ---- runtime: the program
set_target_properties(tarvikvi PROPERTIES INSTALL_RPATH "\$ORIGIN/${TARVIK_LIBRARIES_FROM_PROGRAMS}")
install(TARGETS tarvikvi RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
set(TARVIK_PROGRAM_FILES "${CMAKE_SOURCE_DIR}/apps/tarvikvi")
install(FILES "${TARVIK_PROGRAM_FILES}/tarvikvi.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications"
  COMPONENT runtime)
install(FILES "${TARVIK_PROGRAM_FILES}/tarvikvi.svg"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps" COMPONENT runtime)
install(FILES "${TARVIK_PROGRAM_FILES}/tarvikvi.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo"
  COMPONENT runtime)
install(FILES "${TARVIK_PROGRAM_FILES}/tarvikvi.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT runtime)
tarvik_install_documents(runtime user-guide.md)
install(DIRECTORY "${CMAKE_SOURCE_DIR}/docs/pictures" DESTINATION "${TARVIK_DOCUMENT_FOLDER}" COMPONENT runtime)

# ---- ctl: the settings from the command line, which needs no toolkit
set_target_properties(tarvikctl PROPERTIES INSTALL_RPATH "\$ORIGIN/${TARVIK_LIBRARIES_FROM_PROGRAMS}")
install(TARGETS tarvikctl RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ctl)
install(FILES "${CMAKE_SOURCE_DIR}/apps/tarvikctl/tarvikctl.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT ctl)
install(FILES "${CMAKE_SOURCE_DIR}/apps/tarvikctl/tarvikctl.bash"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME tarvikctl COMPONENT ctl)
tarvik_install_documents(ctl setups.md setup.schema.json)

# ---- python: the module, where the distribution's Python looks for modules of packages
if(TARGET tarvikvi_core)
  set(TARVIK_PYTHON_FOLDER "lib/python3/dist-packages/tarvikvi")
  file(RELATIVE_PATH way "/prefix/${TARVIK_PYTHON_FOLDER}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(tarvikvi_core PROPERTIES INSTALL_RPATH "\$ORIGIN/${way}")
  install(TARGETS tarvikvi_core LIBRARY DESTINATION "${TARVIK_PYTHON_FOLDER}" COMPONENT python)
  install(FILES ${TARVIK_PYTHON_FILES} DESTINATION "${TARVIK_PYTHON_FOLDER}" COMPONENT python)
  tarvik_install_documents(python python.md python-session.py)
endif()

# ---- development: the headers of the public classes and what they include
tarvik_install_headers(development
  bitpattern/BitPattern.h bitpattern/ChannelCode.h
  controls/CboEnhanced.h controls/FrameEnhanced.h
  engrspin/EngrSpin.h
  instrument/Records.h instrument/clsInstrInterface.h
  panel/TarvikGUI.h
  platform/ConsoleHost.h platform/FormControl.h platform/MessageList.h platform/QtHost.h
  support/Control.h support/Event.h support/Host.h support/Variant.h support/modGlobals.h)
install(EXPORT TarvikVITargets NAMESPACE TarvikVI:: DESTINATION "${TARVIK_CMAKE_FOLDER}" COMPONENT development)
tarvik_install_pkgconfig(development tarvikvi)
tarvik_install_documents(development embedding.md architecture.md)
tarvik_install_examples(development panel-host console-session)

# ---- simulator
tarvik_install_driver(simulator KolvenAtl.Kolven.driver tarviksimulator)
tarvik_install_manifest(simulator KolvenAtl.Kolven/simulator.driver "${TARVIK_DRIVER_FOLDER}"
  "$<TARGET_FILE_NAME:tarviksimulator>")
tarvik_install_documents(simulator simulator.md)

# ---- scpi: instruments that speak SCPI, and a simulated one
set_target_properties(tarvik-scpi-simulator PROPERTIES INSTALL_RPATH "\$ORIGIN/${TARVIK_LIBRARIES_FROM_PROGRAMS}")
install(TARGETS tarvik-scpi-simulator RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT scpi)
install(FILES "${CMAKE_SOURCE_DIR}/drivers/scpi/simulator/tarvik-scpi-simulator.1"
  DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT scpi)
tarvik_install_documents(scpi scpi.md scpi-profile.schema.json)
if(TARGET tarvikscpi)
  tarvik_install_driver(scpi KolvenAtl.Kolven/scpi.driver tarvikscpi)
  install(FILES ${TARVIK_SCPI_PROFILES} DESTINATION "${CMAKE_INSTALL_DATADIR}/tarvikvi/scpi-profiles" COMPONENT scpi)
  set_target_properties(tarvik-scpi PROPERTIES INSTALL_RPATH "\$ORIGIN/${TARVIK_LIBRARIES_FROM_PROGRAMS}")
  install(TARGETS tarvik-scpi RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT scpi)
  install(FILES "${CMAKE_SOURCE_DIR}/apps/tarvik-scpi/tarvik-scpi.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
    COMPONENT scpi)
  install(FILES "${CMAKE_SOURCE_DIR}/apps/tarvik-scpi/tarvik-scpi.bash"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME tarvik-scpi COMPONENT scpi)
endif()

# ---- remote: what reaches drivers on servers; server: the program for the machine that has the instruments
if(TARGET tarvikremote)
  tarvik_install_driver(remote tarvik.remote.driver tarvikremote)
  tarvik_install_documents(server remote.md)

  set(TARVIK_SERVER_FILES "${CMAKE_SOURCE_DIR}/drivers/remote")
  set_target_properties(tarvik-driver-server tarvik-driver-server-ctl PROPERTIES INSTALL_RPATH "\$ORIGIN/${TARVIK_LIBRARIES_FROM_PROGRAMS}")
  install(TARGETS tarvik-driver-server tarvik-driver-server-ctl RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT server)
  install(PROGRAMS "${TARVIK_SERVER_FILES}/make-test-certificates.sh" DESTINATION "${CMAKE_INSTALL_BINDIR}"
    RENAME tarvik-make-test-certificates COMPONENT server)
  install(FILES "${TARVIK_SERVER_FILES}/tarvik-driver-server.8" "${TARVIK_SERVER_FILES}/tarvik-driver-server-ctl.8"
    "${TARVIK_SERVER_FILES}/tarvik-make-test-certificates.8"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man8" COMPONENT server)
  # The unit names its program by its whole path, which is known only when the prefix is; it is written where it goes.
  install(CODE "set(TARVIK_SERVER_PROGRAM \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/tarvik-driver-server\")
    set(unit \"\${CMAKE_INSTALL_PREFIX}/lib/systemd/system/tarvik-driver-server.service\")
    configure_file(\"${TARVIK_SERVER_FILES}/tarvik-driver-server.service.in\" \"\$ENV{DESTDIR}\${unit}\" @ONLY)
    list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${unit}\")"
    COMPONENT server)
endif()

# ---- designer: where the toolkit looks for plug-ins of the form designer, below the prefix
if(TARGET tarvikdesigner)
  set(TARVIK_DESIGNER_FOLDER "${CMAKE_INSTALL_LIBDIR}/qt6/plugins/designer")
  file(RELATIVE_PATH way "/prefix/${TARVIK_DESIGNER_FOLDER}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(tarvikdesigner PROPERTIES INSTALL_RPATH "\$ORIGIN/${way}")
  install(TARGETS tarvikdesigner LIBRARY DESTINATION "${TARVIK_DESIGNER_FOLDER}" COMPONENT designer)
endif()

include(TarvikPackages)
