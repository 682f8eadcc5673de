# What `cmake --install` puts where, in three components: library (what a program needs to run),
# development (what a developer needs besides) and application.

include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/RAIDMonitoring)
set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/RAIDMonitoring)

install(TARGETS ${raidmonitoring_libraries} EXPORT RAIDMonitoringTargets
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
  FILE_SET HEADERS DESTINATION ${header_folder} COMPONENT development
  FILE_SET generated_headers DESTINATION ${header_folder} COMPONENT development
  INCLUDES DESTINATION ${header_folder})
install(EXPORT RAIDMonitoringTargets NAMESPACE RAIDMonitoring:: DESTINATION ${package_folder}
  COMPONENT development)

configure_package_config_file(cmake/RAIDMonitoringConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/RAIDMonitoringConfig.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/RAIDMonitoringConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/package/RAIDMonitoringConfig.cmake
  ${PROJECT_BINARY_DIR}/package/RAIDMonitoringConfigVersion.cmake
  DESTINATION ${package_folder} COMPONENT development)

# pkg-config. The prefix is found from the file's own place, so that the tree can be moved; a folder that
# was given as an absolute one stays where it is.
file(RELATIVE_PATH pkgconfig_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix "${pkgconfig_to_prefix}")
foreach(folder IN ITEMS LIBDIR INCLUDEDIR)
  set(pkgconfig_${folder} "\${prefix}/${CMAKE_INSTALL_${folder}}")
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
    set(pkgconfig_${folder} "${CMAKE_INSTALL_${folder}}")
  endif()
endforeach()
set(pkgconfig_cflags "")
set(pkgconfig_libs "-lRAIDMonitoring")
if(RAIDMONITORING_REGISTRY STREQUAL "memory")
  string(APPEND pkgconfig_libs " -lRAIDMonitoringRegistry")
else()
  string(APPEND pkgconfig_libs " -framework IOKit -framework CoreFoundation")
  string(APPEND pkgconfig_cflags " -DRAIDMONITORING_REGISTRY_IOKIT")
endif()
if(RAIDMONITORING_PELAGO STREQUAL "own")
  string(APPEND pkgconfig_libs " -lPelago")
endif()
configure_file(cmake/RAIDMonitoring.pc.in ${PROJECT_BINARY_DIR}/package/RAIDMonitoring.pc @ONLY)
# An external framework is linked by whoever has it: there is nothing to say of it here.
install(FILES ${PROJECT_BINARY_DIR}/package/RAIDMonitoring.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES README.md CHANGELOG.md CONTRIBUTING.md LICENSE
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT development
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN man EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)

include(cmake/ManualPages.cmake)

if(RAIDMONITORING_APPLICATION)
  install(DIRECTORY application/demo DESTINATION ${CMAKE_INSTALL_DATADIR}/RAIDMonitoring
    COMPONENT application FILES_MATCHING PATTERN "*.plist")
  # How other people's monitors ask it, and how it is kept running: see docs/monitoring.md and
  # docs/running.md.
  install(DIRECTORY packaging/nagios packaging/icinga packaging/prometheus packaging/launchd
    DESTINATION ${CMAKE_INSTALL_DATADIR}/RAIDMonitoring COMPONENT application)
  install(FILES packaging/raidmonitor.toml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/RAIDMonitoring/examples COMPONENT application)
  include(cmake/Completions.cmake)
endif()
