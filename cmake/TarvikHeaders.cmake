# Headers of the toolkit, the standard library and the test framework, parsed once for each kind of target: a test reads
# some 150,000 lines of them and adds a few hundred of its own. The preset `core` builds without, so that a source that
# forgets an include is found.
option(TARVIK_PRECOMPILE "Precompile the headers of the toolkit and of the test framework" ON)

set(TARVIK_HEADERS_STANDARD
  <algorithm> <array> <filesystem> <fstream> <functional> <map> <memory> <optional> <string> <string_view> <utility>
  <vector>)
if(WIN32)
  list(APPEND TARVIK_HEADERS_STANDARD "${CMAKE_SOURCE_DIR}/src/automation/Abi.h")
endif()
set(TARVIK_HEADERS_TOOLKIT
  <QApplication> <QComboBox> <QEvent> <QGroupBox> <QKeyEvent> <QLabel> <QLineEdit> <QMenu> <QMessageBox> <QPainter>
  <QPointer> <QPushButton> <QRadioButton> <QTimer> <QTreeWidget> <QVBoxLayout> <QVariant> <QWheelEvent> <QWidget>)
set(TARVIK_HEADERS_EVENTS <QTest>)
set(TARVIK_HEADERS_JSON <nlohmann/json.hpp>)
set(TARVIK_HEADERS_TESTS <gmock/gmock.h> <gtest/gtest.h>)
set(TARVIK_HEADERS_REMOTE <grpcpp/grpcpp.h>)

set(TARVIK_HEADERS_OF_plain)
set(TARVIK_HEADERS_OF_widgets TOOLKIT)
set(TARVIK_HEADERS_OF_remote REMOTE)
set(TARVIK_HEADERS_OF_adapters JSON)
set(TARVIK_HEADERS_OF_widget_adapters TOOLKIT EVENTS JSON)
set(TARVIK_HEADERS_OF_tests TESTS)
set(TARVIK_HEADERS_OF_widget_tests TOOLKIT EVENTS TESTS)
set(TARVIK_LIBRARIES_OF_TOOLKIT Qt6::Widgets)
set(TARVIK_LIBRARIES_OF_EVENTS Qt6::Test)
set(TARVIK_LIBRARIES_OF_JSON nlohmann_json::nlohmann_json)
set(TARVIK_LIBRARIES_OF_TESTS GTest::gmock)
set(TARVIK_LIBRARIES_OF_REMOTE gRPC::grpc++ protobuf::libprotobuf Threads::Threads)

# tarvik_headers_target(KIND): the target whose precompiled headers all targets of the kind share.
function(tarvik_headers_target kind)
  set(source "${CMAKE_BINARY_DIR}/headers/${kind}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "int main() { return 0; }\n")
  # Of the sort of its users: programs and libraries are compiled with other flags.
  if(kind MATCHES "tests")
    add_executable(tarvik_headers_${kind} EXCLUDE_FROM_ALL "${source}")
  else()
    add_library(tarvik_headers_${kind} OBJECT EXCLUDE_FROM_ALL "${source}")
  endif()
  target_link_libraries(tarvik_headers_${kind} PRIVATE tarvik_build)
  set_target_properties(tarvik_headers_${kind} PROPERTIES AUTOMOC OFF)
  set(headers ${TARVIK_HEADERS_STANDARD})
  foreach(group ${TARVIK_HEADERS_OF_${kind}})
    list(APPEND headers ${TARVIK_HEADERS_${group}})
    target_link_libraries(tarvik_headers_${kind} PRIVATE ${TARVIK_LIBRARIES_OF_${group}})
  endforeach()
  target_precompile_headers(tarvik_headers_${kind} PRIVATE ${headers})
endfunction()

# tarvik_share_headers(TARGET KIND): KIND is plain for a room without the toolkit, widgets for one on its side, remote for
# one that speaks gRPC, tests or widget_tests for tests, adapters or widget_adapters for what else is below tests/.
function(tarvik_share_headers target kind)
  if(NOT TARVIK_PRECOMPILE)
    return()
  endif()
  if(NOT TARGET tarvik_headers_${kind})
    tarvik_headers_target(${kind})
  endif()
  target_precompile_headers(${target} REUSE_FROM tarvik_headers_${kind})
endfunction()
