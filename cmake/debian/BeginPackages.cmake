# Read by cpack before anything else.
set(ENV{TARVIK_PACKAGING} ON)

# A set of packages with one missing would look whole.
if(CPACK_TARVIK_LEFT_OUT)
  list(JOIN CPACK_TARVIK_LEFT_OUT "\n  " parts)
  message(FATAL_ERROR "The packages cannot be made, parts of the build were left out:\n  ${parts}\n"
    "Install what is missing and configure anew, or configure without the part (TARVIK_DESIGNER, TARVIK_REMOTE).")
endif()
