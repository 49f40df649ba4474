# What is installed where, in seven components: automation, runtime, development, simulator, designer, remote, server.
include(CMakePackageConfigHelpers)

set(TARVIK_INCLUDE_FOLDER "${CMAKE_INSTALL_INCLUDEDIR}/tarvikvi")
set(TARVIK_CMAKE_FOLDER "${CMAKE_INSTALL_LIBDIR}/cmake/TarvikVI")
set(TARVIK_DRIVER_FOLDER "${CMAKE_INSTALL_LIBDIR}/tarvikvi")
set(TARVIK_MANIFEST_FOLDER "${CMAKE_INSTALL_DATADIR}/tarvikvi/drivers")

# The libraries find one another wherever the prefix goes.
set_target_properties(tarvikautomation tarvikvi_lib PROPERTIES INSTALL_RPATH "\$ORIGIN")
file(RELATIVE_PATH TARVIK_LIBRARIES_FROM_PROGRAMS
  "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
set_target_properties(tarvikvi PROPERTIES INSTALL_RPATH "\$ORIGIN/${TARVIK_LIBRARIES_FROM_PROGRAMS}")

target_include_directories(tarvikautomation INTERFACE $<INSTALL_INTERFACE:${TARVIK_INCLUDE_FOLDER}>)
target_compile_features(tarvikautomation INTERFACE cxx_std_20)

# ---- automation: what drivers and their callers share, which a machine without a screen needs as well
install(TARGETS tarvikautomation EXPORT TarvikVITargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT automation NAMELINK_COMPONENT development)

# ---- runtime
install(TARGETS tarvikvi_lib EXPORT TarvikVITargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development)
install(TARGETS tarvikvi RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
set(TARVIK_PROGRAM_FILES "${CMAKE_SOURCE_DIR}/apps/tarvikvi")
install(FILES "${TARVIK_PROGRAM_FILES}/tarvikvi.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications"
  COMPONENT runtime)
install(FILES "${TARVIK_PROGRAM_FILES}/tarvikvi.svg"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps" COMPONENT runtime)
install(FILES "${TARVIK_PROGRAM_FILES}/tarvikvi.metainfo.xml" DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo"
  COMPONENT runtime)
install(FILES "${TARVIK_PROGRAM_FILES}/tarvikvi.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT runtime)

# ---- development: the headers of the public classes and what they include
set(TARVIK_PUBLIC_HEADERS
  automation/Abi.h automation/Activation.h automation/AutomationArray.h automation/AutomationString.h
  automation/ErrorInfo.h automation/Export.h automation/Object.h automation/Ref.h
  bitpattern/BitPattern.h bitpattern/PatternBits.h bitpattern/PatternOperations.h bitpattern/PatternStore.h
  bitpattern/RowInfo.h
  controls/CboEnhanced.h controls/FrameEnhanced.h
  engrspin/DigitCursor.h engrspin/EngrNumber.h engrspin/EngrSpin.h engrspin/FieldLayout.h engrspin/NumberTextBox.h
  engrspin/ValueList.h
  instrument/InstrCommands.h instrument/KolvenDriver.h instrument/LevelFormatEnum.h instrument/PeriodPrecedence.h
  instrument/Restrictions.h instrument/clsInstrInterface.h instrument/udtInstrInfo.h instrument/udtLevelInfo.h
  instrument/udtLimitsInfo.h instrument/udtModeInfo.h instrument/udtTimingInfo.h instrument/udtTrgLevelsInfo.h
  instrument/viInfo.h
  panel/Form.h panel/Page.h panel/PanelState.h panel/TarvikGUI.h
  platform/ConsoleHost.h platform/ControlSite.h platform/FormProperties.h platform/PictureBox.h platform/PlainControls.h platform/PropertyBag.h
  platform/QtHost.h platform/TabControl.h platform/Twips.h platform/WidgetControl.h
  support/Control.h support/DynamicArray.h support/Event.h support/Export.h support/Host.h support/RunTimeError.h
  support/Types.h support/Variant.h support/modGlobals.h)
foreach(header IN LISTS TARVIK_PUBLIC_HEADERS)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${CMAKE_SOURCE_DIR}/src/${header}" DESTINATION "${TARVIK_INCLUDE_FOLDER}/${folder}"
    COMPONENT development)
endforeach()

install(EXPORT TarvikVITargets NAMESPACE TarvikVI:: DESTINATION "${TARVIK_CMAKE_FOLDER}" COMPONENT development)
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/TarvikVIConfig.cmake.in"
  "${CMAKE_BINARY_DIR}/install/TarvikVIConfig.cmake" INSTALL_DESTINATION "${TARVIK_CMAKE_FOLDER}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/install/TarvikVIConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/install/TarvikVIConfig.cmake"
  "${CMAKE_BINARY_DIR}/install/TarvikVIConfigVersion.cmake" DESTINATION "${TARVIK_CMAKE_FOLDER}"
  COMPONENT development)

# Paths within the file are relative to it, so that it serves any prefix.
file(RELATIVE_PATH TARVIK_PREFIX_FROM_PKGCONFIG "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
foreach(module tarvikvi tarvikautomation)
  configure_file("${CMAKE_CURRENT_LIST_DIR}/${module}.pc.in" "${CMAKE_BINARY_DIR}/install/${module}.pc" @ONLY)
  install(FILES "${CMAKE_BINARY_DIR}/install/${module}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT development)
endforeach()

# tarvik_install_loaded(TARGET MANIFEST COMPONENT): a library that is loaded by name, and its manifest beside the libraries
# and in the data folder, each with the way to it.
function(tarvik_install_loaded target manifest component)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "\$ORIGIN/..")
  install(TARGETS ${target} LIBRARY DESTINATION "${TARVIK_DRIVER_FOLDER}" COMPONENT ${component})
  foreach(folder "${CMAKE_INSTALL_LIBDIR}" "${TARVIK_MANIFEST_FOLDER}")
    file(RELATIVE_PATH way "/prefix/${folder}" "/prefix/${TARVIK_DRIVER_FOLDER}")
    string(MAKE_C_IDENTIFIER "${folder}" place)
    file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/install/${place}/${manifest}"
      CONTENT "${way}/$<TARGET_FILE_NAME:${target}>\n")
    install(FILES "${CMAKE_BINARY_DIR}/install/${place}/${manifest}" DESTINATION "${folder}" COMPONENT ${component})
  endforeach()
endfunction()

# ---- simulator
tarvik_install_loaded(tarviksimulator KolvenAtl.Kolven.driver simulator)

# ---- remote: what reaches drivers on servers; server: the program for the machine that has the instruments
if(TARGET tarvikremote)
  tarvik_install_loaded(tarvikremote tarvik.remote.driver remote)

  set(TARVIK_SERVER_FILES "${CMAKE_SOURCE_DIR}/drivers/remote")
  set_target_properties(tarvik-driver-server PROPERTIES INSTALL_RPATH "\$ORIGIN/${TARVIK_LIBRARIES_FROM_PROGRAMS}")
  install(TARGETS tarvik-driver-server RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT server)
  install(PROGRAMS "${TARVIK_SERVER_FILES}/make-test-certificates.sh" DESTINATION "${CMAKE_INSTALL_BINDIR}"
    RENAME tarvik-make-test-certificates COMPONENT server)
  install(FILES "${TARVIK_SERVER_FILES}/tarvik-driver-server.8" "${TARVIK_SERVER_FILES}/tarvik-make-test-certificates.8"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man8" COMPONENT server)
  # The unit names its program by its whole path, which is known only when the prefix is.
  set(TARVIK_UNIT "${CMAKE_BINARY_DIR}/install/tarvik-driver-server.service")
  install(CODE "set(TARVIK_SERVER_PROGRAM \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/tarvik-driver-server\")
    configure_file(\"${TARVIK_SERVER_FILES}/tarvik-driver-server.service.in\" \"${TARVIK_UNIT}\" @ONLY)"
    COMPONENT server)
  install(FILES "${TARVIK_UNIT}" DESTINATION lib/systemd/system COMPONENT server)
endif()

# ---- designer: where the toolkit looks for plug-ins of the form designer, below the prefix
if(TARGET tarvikdesigner)
  set(TARVIK_DESIGNER_FOLDER "${CMAKE_INSTALL_LIBDIR}/qt6/plugins/designer")
  set_target_properties(tarvikdesigner PROPERTIES INSTALL_RPATH "\$ORIGIN/../../..")
  install(TARGETS tarvikdesigner LIBRARY DESTINATION "${TARVIK_DESIGNER_FOLDER}" COMPONENT designer)
endif()

include(TarvikPackages)
