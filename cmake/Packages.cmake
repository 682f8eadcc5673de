# `cpack --config CPackConfig.cmake` in the build folder makes three Debian packages, one per
# component: the libraries, what a developer needs besides, and the application.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME raidmonitoring)
set(CPACK_PACKAGE_VENDOR "The RAIDMonitoring authors")
set(CPACK_PACKAGE_CONTACT "The RAIDMonitoring authors <raidmonitoring@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL library development application)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/FinishDebian.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/LeaveToTriggers.cmake)
# Debian has the libraries of each architecture apart. An installation that is not in /usr has not.
if(CMAKE_INSTALL_LIBDIR STREQUAL "lib")
  set(CPACK_RAIDMONITORING_MOVE_LIBRARIES_TO "${CMAKE_LIBRARY_ARCHITECTURE}")
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
# Where the packages' own libraries are, for those among them that need each other.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "watches software RAID sets in Thunderbolt enclosures")
string(CONCAT about
  "RAIDMonitoring finds the software RAID sets on disks in Thunderbolt\n"
  "enclosures, says how they are, and in which bay each of their disks sits.\n")

set(library_package libraidmonitoring${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${about}.\nThis package has the shared libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libraidmonitoring-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${about}.
This package has what applications are built with: headers, files for CMake
and pkg-config, documents and an example.")

set(CPACK_DEBIAN_APPLICATION_PACKAGE_NAME raidmonitor)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_DEPENDS "${library_package} (>= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_APPLICATION_DESCRIPTION "${about}.
This package has the program raidmonitor. On this system it reads recordings
of the I/O Registry of a machine that has such sets; one is built in.")

configure_file(packaging/copyright.in ${PROJECT_BINARY_DIR}/package/copyright @ONLY)
string(TIMESTAMP package_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(packaging/changelog.in ${PROJECT_BINARY_DIR}/package/changelog @ONLY)
set(CPACK_RAIDMONITORING_PAPERS ${PROJECT_BINARY_DIR}/package)
include(CPack)
