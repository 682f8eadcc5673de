# What an outer project can call its own, before and after it takes the library in.

# take_snapshot(NAME): its variables with their values, its folder's properties, its commands.
macro(take_snapshot name)
  get_cmake_property(${name}_variables VARIABLES)
  # What belongs to this file, and what the taking in is meant to give.
  list(FILTER ${name}_variables EXCLUDE REGEX
    "^(before|after|snapshot)_|^(RAIDMONITORING_|RAIDMonitoring_|raidmonitoring_|FETCHCONTENT_|ARG|_)|^CMAKE_(CURRENT_FUNCTION|PARENT_LIST)")
  foreach(snapshot_variable IN LISTS ${name}_variables)
    set(${name}_value_${snapshot_variable} "${${snapshot_variable}}")
  endforeach()
  set(${name}_properties "")
  foreach(snapshot_property IN ITEMS COMPILE_DEFINITIONS COMPILE_OPTIONS INCLUDE_DIRECTORIES
      LINK_OPTIONS LINK_LIBRARIES TESTS BUILDSYSTEM_TARGETS)
    get_property(snapshot_value DIRECTORY PROPERTY ${snapshot_property})
    list(APPEND ${name}_properties "${snapshot_property}=${snapshot_value}")
  endforeach()
  get_cmake_property(${name}_commands COMMANDS)
endmacro()

# compare_snapshots(BEFORE AFTER): an error when the second has anything more, less or else.
macro(compare_snapshots before after)
  if(NOT ${before}_properties STREQUAL ${after}_properties)
    message(FATAL_ERROR "The library changes '${${before}_properties}' to '${${after}_properties}'")
  endif()
  foreach(snapshot_variable IN LISTS ${before}_variables ${after}_variables)
    # What CMake's modules keep for themselves: answers of the compiler, and where things are installed.
    if(snapshot_variable MATCHES "HAS_|VISIBILITY|^CMAKE_PROJECT_"
        AND NOT DEFINED ${before}_value_${snapshot_variable})
      continue()
    endif()
    if(NOT "${${before}_value_${snapshot_variable}}" STREQUAL "${${after}_value_${snapshot_variable}}"
        OR NOT DEFINED ${before}_value_${snapshot_variable})
      message(FATAL_ERROR "The library changes ${snapshot_variable} from "
        "'${${before}_value_${snapshot_variable}}' to '${${after}_value_${snapshot_variable}}'")
    endif()
  endforeach()
endmacro()

# targets_beneath(OUT FOLDER): the targets of a source folder and of all within it.
function(targets_beneath out folder)
  get_property(all DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
  get_property(within DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
  foreach(inner IN LISTS within)
    targets_beneath(more ${inner})
    list(APPEND all ${more})
  endforeach()
  set(${out} ${all} PARENT_SCOPE)
endfunction()

# check_names(FOLDER): every target and command that the library in FOLDER brings bears its name.
function(check_names folder)
  targets_beneath(targets ${folder})
  if(NOT "RAIDMonitoring" IN_LIST targets)
    message(FATAL_ERROR "The library's targets were not found in ${folder}")
  endif()
  list(FILTER targets EXCLUDE REGEX "^(RAIDMonitoring|raidmonitoring_|Pelago$)")
  if(targets)
    message(FATAL_ERROR "Names that may be another's: ${targets}")
  endif()

  set(commands ${after_commands})
  list(REMOVE_ITEM commands ${before_commands})
  list(FILTER commands EXCLUDE REGEX "^_|^raidmonitoring_")
  if(commands)
    message(FATAL_ERROR "Commands that may be another's: ${commands}")
  endif()
endfunction()
