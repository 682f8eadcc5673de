# Run by CPack between installing and packing: what Debian asks of a package and the installation does
# not give. Every component lies in a folder of its own beneath the temporary one.

foreach(component library development application)
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}/usr)
  if(NOT IS_DIRECTORY ${root})
    continue()
  endif()
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})

  # The linker knows /usr/lib by itself.
  file(GLOB binaries ${root}/bin/* ${root}/lib/*.so.*.*)
  foreach(binary IN LISTS binaries)
    file(RPATH_REMOVE FILE ${binary})
  endforeach()

  # Documents lie under the package's name.
  if(IS_DIRECTORY ${root}/share/doc/RAIDMonitoring)
    file(RENAME ${root}/share/doc/RAIDMonitoring ${root}/share/doc/${package})
  endif()
  file(COPY ${CPACK_RAIDMONITORING_PAPERS}/copyright ${CPACK_RAIDMONITORING_PAPERS}/changelog
    DESTINATION ${root}/share/doc/${package}
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

  file(GLOB_RECURSE pages ${root}/share/man/*)
  foreach(file IN LISTS pages ITEMS ${root}/share/doc/${package}/changelog)
    execute_process(COMMAND gzip -9n ${file} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endforeach()
