# The manual pages, made from docs/man/: @PART_NAME@ in a page is docs/man/parts/NAME.man, what several
# pages say in common. Their date is that of the newest version in the changelog.

file(STRINGS CHANGELOG.md man_date REGEX "^## \\[[0-9.]+\\] - " LIMIT_COUNT 1)
string(REGEX REPLACE ".* - " "" man_date "${man_date}")

file(GLOB parts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/parts/*.man)
foreach(part IN LISTS parts)
  get_filename_component(name ${part} NAME_WE)
  file(READ ${part} PART_${name})
  string(STRIP "${PART_${name}}" PART_${name})
endforeach()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${parts} CHANGELOG.md)

# raidmonitoring_install_pages(SECTION COMPONENT NAME...)
function(raidmonitoring_install_pages section component)
  foreach(page IN LISTS ARGN)
    configure_file(docs/man/${page}.${section}.in ${PROJECT_BINARY_DIR}/man/${page}.${section} @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/man/${page}.${section}
      DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
  endforeach()
endfunction()

raidmonitoring_install_pages(3 development RAIDMonitoring)
if(RAIDMONITORING_APPLICATION)
  raidmonitoring_install_pages(1 application
    raidmonitor
    raidmonitor-check
    raidmonitor-completions
    raidmonitor-list
    raidmonitor-metrics
    raidmonitor-record
    raidmonitor-report
    raidmonitor-slots
    raidmonitor-watch)
endif()
