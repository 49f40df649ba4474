# What is installed where, in four components: runtime, development, simulator, designer.
include(CMakePackageConfigHelpers)

set(TARVIK_INCLUDE_FOLDER "${CMAKE_INSTALL_INCLUDEDIR}/tarvikvi")
set(TARVIK_CMAKE_FOLDER "${CMAKE_INSTALL_LIBDIR}/cmake/TarvikVI")
set(TARVIK_DRIVER_FOLDER "${CMAKE_INSTALL_LIBDIR}/tarvikvi")
set(TARVIK_MANIFEST_FOLDER "${CMAKE_INSTALL_DATADIR}/tarvikvi/drivers")

# The libraries find one another wherever the prefix goes.
set_target_properties(tarvikautomation tarvikvi_lib PROPERTIES INSTALL_RPATH "\$ORIGIN")
set_target_properties(tarviksimulator PROPERTIES INSTALL_RPATH "\$ORIGIN/..")
file(RELATIVE_PATH TARVIK_LIBRARIES_FROM_PROGRAMS
  "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
set_target_properties(tarvikvi PROPERTIES INSTALL_RPATH "\$ORIGIN/${TARVIK_LIBRARIES_FROM_PROGRAMS}")

target_include_directories(tarvikautomation INTERFACE $<INSTALL_INTERFACE:${TARVIK_INCLUDE_FOLDER}>)
target_compile_features(tarvikautomation INTERFACE cxx_std_20)

# ---- runtime
install(TARGETS tarvikautomation tarvikvi_lib EXPORT TarvikVITargets
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
  instrument/InstrCommands.h instrument/KolvenDriver.h instrument/clsInstrInterface.h instrument/udtInstrInfo.h
  instrument/udtLevelInfo.h instrument/udtLimitsInfo.h instrument/udtModeInfo.h instrument/udtTimingInfo.h
  instrument/udtTrgLevelsInfo.h instrument/viInfo.h
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

# ---- simulator: the driver, and its manifest beside the libraries and in the data folder, each with the way to it
install(TARGETS tarviksimulator LIBRARY DESTINATION "${TARVIK_DRIVER_FOLDER}" COMPONENT simulator)
foreach(folder "${CMAKE_INSTALL_LIBDIR}" "${TARVIK_MANIFEST_FOLDER}")
  file(RELATIVE_PATH way "/prefix/${folder}" "/prefix/${TARVIK_DRIVER_FOLDER}")
  string(MAKE_C_IDENTIFIER "${folder}" place)
  file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/install/${place}/KolvenAtl.Kolven.driver"
    CONTENT "${way}/$<TARGET_FILE_NAME:tarviksimulator>\n")
  install(FILES "${CMAKE_BINARY_DIR}/install/${place}/KolvenAtl.Kolven.driver" DESTINATION "${folder}"
    COMPONENT simulator)
endforeach()

# ---- designer: where the toolkit looks for plug-ins of the form designer, below the prefix
if(TARGET tarvikdesigner)
  set(TARVIK_DESIGNER_FOLDER "${CMAKE_INSTALL_LIBDIR}/qt6/plugins/designer")
  set_target_properties(tarvikdesigner PROPERTIES INSTALL_RPATH "\$ORIGIN/../../..")
  install(TARGETS tarvikdesigner LIBRARY DESTINATION "${TARVIK_DESIGNER_FOLDER}" COMPONENT designer)
endif()

include(TarvikPackages)
