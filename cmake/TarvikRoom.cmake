# What every target of the project has in common.
add_library(tarvik_build INTERFACE)
target_compile_features(tarvik_build INTERFACE cxx_std_20)
target_compile_options(tarvik_build INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${TARVIK_WERROR}>:-Werror>)
if(TARVIK_PRECOMPILE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # The compiler's false alarms within std::string, which it keeps to itself only as long as it reads the header anew.
  target_compile_options(tarvik_build INTERFACE
    -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
endif()
target_include_directories(tarvik_build INTERFACE "${CMAKE_SOURCE_DIR}/src")
if(NOT WIN32)
  # gRPC asks its users for it, and sources that share precompiled headers have to agree.
  target_compile_options(tarvik_build INTERFACE -pthread)
endif()
# Sixty programs are linked, most of them with the toolkit: mold takes a tenth of the time of the default linker.
find_program(TARVIK_MOLD mold)
if(TARVIK_MOLD AND NOT WIN32)
  add_link_options(-fuse-ld=mold)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# tarvik_add_room(NAME [DLL] [HEADERS kind] source...): the library of one room without the toolkit, target tarvik_NAME. With
# DLL it is one for Windows, which exports all it has, to programs of the same compiler. For the kinds of precompiled
# headers see TarvikHeaders.cmake.
function(tarvik_add_room name)
  cmake_parse_arguments(arg "DLL" "HEADERS" "" HEADERS plain ${ARGN})
  set(sort STATIC)
  if(arg_DLL AND WIN32)
    set(sort SHARED)
  endif()
  add_library(tarvik_${name} ${sort} ${arg_UNPARSED_ARGUMENTS})
  if(sort STREQUAL SHARED)
    set_target_properties(tarvik_${name} PROPERTIES OUTPUT_NAME tarvik${name} WINDOWS_EXPORT_ALL_SYMBOLS ON)
  endif()
  target_link_libraries(tarvik_${name} PUBLIC tarvik_build)
  tarvik_share_headers(tarvik_${name} ${arg_HEADERS})
endfunction()

# tarvik_add_test(NAME LIBS lib... SOURCES source...): a GoogleTest program whose tests ctest runs one by one.
function(tarvik_add_test name)
  cmake_parse_arguments(arg "" "" "LIBS;SOURCES" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBS} GTest::gmock GTest::gtest_main)
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests/support")
  if("${arg_LIBS}" MATCHES "Qt6::")
    tarvik_share_headers(${name} widget_tests)
  else()
    tarvik_share_headers(${name} tests)
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES PROPERTIES TIMEOUT 300
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
endfunction()

# tarvik_leave_out(PART OPTION what it needs): a part that is built unless OPTION says otherwise. Where it was wanted and
# cannot be built, the packages cannot be made either.
function(tarvik_leave_out part option needs)
  if(${option})
    message(WARNING "${part} is left out: it needs ${needs}. No packages can be made of this build.")
    set_property(GLOBAL APPEND PROPERTY TARVIK_LEFT_OUT "${part} needs ${needs}")
  else()
    message(STATUS "${part} is left out: ${option} is off")
  endif()
endfunction()

# A folder that may be absent from a trimmed source tree.
function(tarvik_add_optional folder)
  if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt")
    add_subdirectory(${folder})
  endif()
endfunction()

# tarvik_add_widget_room(NAME source...): a room on the toolkit's side.
function(tarvik_add_widget_room name)
  add_library(tarvik_${name} STATIC ${ARGN})
  target_link_libraries(tarvik_${name} PUBLIC tarvik_build Qt6::Widgets)
  tarvik_share_headers(tarvik_${name} widgets)
endfunction()

# tarvik_compile_alone(source...): joined with no other source, since tests take its calls at link time (tarvik_watch), which
# reaches calls from other objects only.
function(tarvik_compile_alone)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# tarvik_compile_quickly(source...): without optimization, for what runs once in the life of a program. A command line's
# library takes fifteen seconds to optimize.
function(tarvik_compile_quickly)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS -O0 SKIP_PRECOMPILE_HEADERS ON)
endfunction()
