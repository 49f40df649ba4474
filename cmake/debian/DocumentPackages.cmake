# Read by cpack when the files of all packages are in place: gives each package copyright and changelogs, compresses its
# manual pages, as the distribution wants them, and adds what is told to the distribution's checker.
function(place file folder)
  file(COPY "${file}" DESTINATION "${folder}" FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

function(compress file to)
  # Without name and time in it the same text gives the same file.
  execute_process(COMMAND gzip -9 -n -c "${file}" OUTPUT_FILE "${to}" COMMAND_ERROR_IS_FATAL ANY)
  file(CHMOD "${to}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

configure_file("${CPACK_TARVIK_DEBIAN_FOLDER}/changelog" "${CPACK_TEMPORARY_DIRECTORY}/changelog" @ONLY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER "${component}" name)
  set(name "${CPACK_DEBIAN_${name}_PACKAGE_NAME}")
  set(root "${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}")
  if(NOT IS_DIRECTORY "${root}")
    message(FATAL_ERROR "The package ${name} would be empty: nothing was installed for the component ${component}")
  endif()

  set(documents "${root}/share/doc/${name}")
  place("${CPACK_TARVIK_DEBIAN_FOLDER}/copyright" "${documents}")
  compress("${CPACK_TARVIK_CHANGES}" "${documents}/changelog.gz")
  compress("${CPACK_TEMPORARY_DIRECTORY}/changelog" "${documents}/changelog.Debian.gz")

  if(EXISTS "${CPACK_TARVIK_DEBIAN_FOLDER}/overrides/${name}")
    place("${CPACK_TARVIK_DEBIAN_FOLDER}/overrides/${name}" "${root}/share/lintian/overrides")
  endif()

  file(GLOB manuals "${root}/share/man/man*/*.[1-9]")
  foreach(manual IN LISTS manuals)
    compress("${manual}" "${manual}.gz")
    file(REMOVE "${manual}")
  endforeach()
endforeach()
