# Run by CPack on the packages that it made: a package of shared libraries gets scripts from it which run
# ldconfig. The trigger does that (packaging/triggers), once for all packages that are installed together.

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(unpacked ${CPACK_TEMPORARY_DIRECTORY}/unpacked)
  file(REMOVE_RECURSE ${unpacked})
  execute_process(COMMAND dpkg-deb --raw-extract ${package} ${unpacked} COMMAND_ERROR_IS_FATAL ANY)
  if(EXISTS ${unpacked}/DEBIAN/triggers)
    file(REMOVE ${unpacked}/DEBIAN/postinst ${unpacked}/DEBIAN/postrm)
    execute_process(COMMAND dpkg-deb --root-owner-group --build ${unpacked} ${package}
      OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  endif()
  file(REMOVE_RECURSE ${unpacked})
endforeach()
