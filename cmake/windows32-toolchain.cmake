set(TARVIK_WINDOWS_MACHINE i686)
include("${CMAKE_CURRENT_LIST_DIR}/windows-toolchain.cmake")
