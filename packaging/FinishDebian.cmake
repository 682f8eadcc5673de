# Run by CPack between installing and packing: what Debian asks of a package and the installation does
# not give. Every component lies in a folder of its own beneath the temporary one.

# move_libraries(ROOT ARCHITECTURE): from lib/ to lib/ARCHITECTURE/, with what CMake and pkg-config are
# told of it. The folder is one deeper there.
function(move_libraries root architecture)
  file(GLOB libraries ${root}/lib/*)
  file(MAKE_DIRECTORY ${root}/lib/${architecture})
  foreach(library IN LISTS libraries)
    get_filename_component(name ${library} NAME)
    file(RENAME ${library} ${root}/lib/${architecture}/${name})
  endforeach()

  set(up "get_filename_component(_IMPORT_PREFIX \"\${_IMPORT_PREFIX}\" PATH)\n")
  file(GLOB texts ${root}/lib/${architecture}/cmake/*/*.cmake ${root}/lib/${architecture}/pkgconfig/*.pc)
  foreach(text_file IN LISTS texts)
    file(READ ${text_file} text)
    string(REPLACE "prefix}/lib" "prefix}/lib/${architecture}" text "${text}")
    string(REPLACE "_IMPORT_PREFIX}/lib/" "_IMPORT_PREFIX}/lib/${architecture}/" text "${text}")
    string(REPLACE "${up}${up}${up}" "${up}${up}${up}${up}" text "${text}")
    string(REPLACE "CMAKE_CURRENT_LIST_DIR}/../../../" "CMAKE_CURRENT_LIST_DIR}/../../../../" text "${text}")
    string(REPLACE "pcfiledir}/../.." "pcfiledir}/../../.." text "${text}")
    file(WRITE ${text_file} "${text}")
  endforeach()
endfunction()

foreach(component library development application)
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}/usr)
  if(NOT IS_DIRECTORY ${root})
    continue()
  endif()
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})

  # The linker knows its folders by itself.
  file(GLOB_RECURSE binaries ${root}/bin/* ${root}/lib/*.so.*.*)
  foreach(binary IN LISTS binaries)
    file(RPATH_REMOVE FILE ${binary})
  endforeach()
  if(CPACK_RAIDMONITORING_MOVE_LIBRARIES_TO AND IS_DIRECTORY ${root}/lib)
    move_libraries(${root} ${CPACK_RAIDMONITORING_MOVE_LIBRARIES_TO})
  endif()

  # Debian's zsh keeps the site's own apart.
  if(IS_DIRECTORY ${root}/share/zsh/site-functions)
    file(RENAME ${root}/share/zsh/site-functions ${root}/share/zsh/vendor-completions)
  endif()

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
