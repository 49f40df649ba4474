# What a build for Windows has of its own: libraries of headers, which are the same on every machine, and the compiler's
# run-time libraries beside what is built.

# The distribution's folder of headers cannot be searched as a whole: its C library is another one.
set(TARVIK_HEADER_ONLY "${CMAKE_BINARY_DIR}/header-only")
file(MAKE_DIRECTORY "${TARVIK_HEADER_ONLY}")
foreach(entry CLI nlohmann utf8 utf8.h)
  if(NOT EXISTS "/usr/include/${entry}")
    message(FATAL_ERROR "/usr/include/${entry} is missing; packages.txt lists what a build needs")
  endif()
  file(CREATE_LINK "/usr/include/${entry}" "${TARVIK_HEADER_ONLY}/${entry}" SYMBOLIC)
endforeach()
foreach(target utf8cpp nlohmann_json::nlohmann_json CLI11::CLI11)
  add_library(${target} INTERFACE IMPORTED)
  target_include_directories(${target} SYSTEM INTERFACE "${TARVIK_HEADER_ONLY}")
endforeach()

# Exceptions cross from one library to another, so all of them share one run-time library.
if(TARVIK_WINDOWS_MACHINE STREQUAL "i686")
  set(unwinder libgcc_s_dw2-1.dll)
  # The system looks the exports of a class up by their plain names, without the size of their arguments.
  add_link_options(-Wl,--add-stdcall-alias)
else()
  set(unwinder libgcc_s_seh-1.dll)
endif()
foreach(library libstdc++-6.dll ${unwinder} libwinpthread-1.dll)
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${library} OUTPUT_VARIABLE file
    OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT EXISTS "${file}")
    set(file "/usr/${TARVIK_WINDOWS_MACHINE}-w64-mingw32/lib/${library}")
  endif()
  file(COPY "${file}" DESTINATION "${CMAKE_BINARY_DIR}/bin")
endforeach()
