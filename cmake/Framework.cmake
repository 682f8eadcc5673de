# Which framework the library stands on: the project's own (platform/pelago), or one that the builder
# has, of the same interface:
#   RAIDMONITORING_PELAGO=external
#   RAIDMONITORING_PELAGO_INCLUDE_DIR  a folder with the framework's headers as platform/pelago/*.h
#   RAIDMONITORING_PELAGO_TARGET       the framework: a target of CMake's, or a library's file
#   RAIDMONITORING_PELAGO_PACKAGE      the package to find for the target; empty when it needs none

set(RAIDMONITORING_PELAGO own CACHE STRING "The framework to build on: own or external")
set_property(CACHE RAIDMONITORING_PELAGO PROPERTY STRINGS own external)
set(RAIDMONITORING_PELAGO_INCLUDE_DIR "" CACHE PATH "The external framework's headers")
set(RAIDMONITORING_PELAGO_TARGET "" CACHE STRING "The external framework: a target, or a library's file")
set(RAIDMONITORING_PELAGO_PACKAGE "" CACHE STRING "The package that has the external framework's target")

if(RAIDMONITORING_PELAGO STREQUAL "own")
  set(pelago_library Pelago)
  set(pelago_include)
  return()
elseif(NOT RAIDMONITORING_PELAGO STREQUAL "external")
  message(FATAL_ERROR "RAIDMONITORING_PELAGO is own or external, not '${RAIDMONITORING_PELAGO}'")
endif()

if(NOT EXISTS "${RAIDMONITORING_PELAGO_INCLUDE_DIR}/platform/pelago/Object.h")
  message(FATAL_ERROR "RAIDMONITORING_PELAGO_INCLUDE_DIR is the folder that holds the external "
    "framework's platform/pelago/Object.h: there is none in '${RAIDMONITORING_PELAGO_INCLUDE_DIR}'")
endif()
if(RAIDMONITORING_PELAGO_PACKAGE)
  find_package(${RAIDMONITORING_PELAGO_PACKAGE} REQUIRED)
endif()
if(NOT TARGET "${RAIDMONITORING_PELAGO_TARGET}" AND NOT EXISTS "${RAIDMONITORING_PELAGO_TARGET}")
  message(FATAL_ERROR "RAIDMONITORING_PELAGO_TARGET is neither a target nor a file: "
    "'${RAIDMONITORING_PELAGO_TARGET}'")
endif()

set(pelago_library ${RAIDMONITORING_PELAGO_TARGET})
set(pelago_include ${RAIDMONITORING_PELAGO_INCLUDE_DIR})
# Before the project's own folder, which has headers of the same names.
target_include_directories(raidmonitoring_options BEFORE INTERFACE ${pelago_include})
