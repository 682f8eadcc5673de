# The libraries: the framework, off macOS the in-memory registry, and the product on top. Shared ones,
# unless BUILD_SHARED_LIBS says otherwise.

include(cmake/PublicHeaders.cmake)

set(library_type SHARED)
if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
  set(library_type STATIC)
endif()

# raidmonitoring_restrict_exports(TARGET): what templates of the standard library leave in the objects
# is no part of a shared library's interface. The lists name the namespaces; within them visibility
# decides.
function(raidmonitoring_restrict_exports target)
  set(exports ${PROJECT_SOURCE_DIR}/cmake/exports/${target})
  if(NOT library_type STREQUAL "SHARED")
    return()
  elseif(APPLE)
    target_link_options(${target} PRIVATE "LINKER:-exported_symbols_list,${exports}.exp")
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports}.exp)
  else()
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}.map")
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${exports}.map)
  endif()
endfunction()

# raidmonitoring_make_library(NAME EXPORT_FOLDER EXPORT_BASE HEADERS headers... OBJECTS layers...): the
# library RAIDMonitoring::NAME of the objects of layers, with its public headers and its export header
# generated/EXPORT_FOLDER/EXPORT_BASEExport.h, which defines EXPORT_BASE_EXPORT.
function(raidmonitoring_make_library name export_folder export_base)
  cmake_parse_arguments(PARSE_ARGV 3 library "" "" "HEADERS;OBJECTS")
  add_library(${name} ${library_type})
  add_library(RAIDMonitoring::${name} ALIAS ${name})
  foreach(layer IN LISTS library_OBJECTS)
    # Not by linking: an exported static library would ask its users for the layers.
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:${layer}>)
  endforeach()
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:raidmonitoring_options>)
  target_compile_features(${name} INTERFACE cxx_std_17)
  set_target_properties(${name} PROPERTIES
    LINKER_LANGUAGE CXX
    MACOSX_RPATH ON
    POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    INSTALL_RPATH "$<IF:$<BOOL:${APPLE}>,@loader_path,$ORIGIN>")
  raidmonitoring_add_export_header(${name} ${export_folder} ${export_base})
  target_sources(${name}
    INTERFACE
      FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
      FILES ${library_HEADERS})
  target_sources(${name}
    INTERFACE
      FILE_SET generated_headers TYPE HEADERS BASE_DIRS ${PROJECT_BINARY_DIR}/generated
      FILES ${PROJECT_BINARY_DIR}/generated/${export_folder}/${export_base}Export.h)
  raidmonitoring_restrict_exports(${name})
endfunction()

list(TRANSFORM pelago_headers PREPEND ${PROJECT_SOURCE_DIR}/)
list(TRANSFORM memory_registry_headers PREPEND ${PROJECT_SOURCE_DIR}/)
list(TRANSFORM raidmonitoring_headers PREPEND ${PROJECT_SOURCE_DIR}/)

set(raidmonitoring_libraries RAIDMonitoring)
if(RAIDMONITORING_PELAGO STREQUAL "own")
  raidmonitoring_make_library(Pelago platform/pelago Pelago
    HEADERS ${pelago_headers} OBJECTS raidmonitoring_pelago_objects)
  list(APPEND raidmonitoring_libraries Pelago)
endif()

if(RAIDMONITORING_REGISTRY STREQUAL "memory")
  raidmonitoring_make_library(RAIDMonitoringRegistry platform/registry/memory MemoryRegistry
    HEADERS ${memory_registry_headers} OBJECTS raidmonitoring_memory_registry_objects)
  list(APPEND raidmonitoring_libraries RAIDMonitoringRegistry)
  set(registry RAIDMonitoringRegistry)
else()
  set(registry "-framework IOKit" "-framework CoreFoundation")
endif()

raidmonitoring_make_library(RAIDMonitoring . RAIDMonitoring HEADERS ${raidmonitoring_headers}
  OBJECTS
    raidmonitoring_monitor_objects
    raidmonitoring_thunderbolt_objects
    raidmonitoring_model_objects
    raidmonitoring_registry_utilities_objects)
target_link_libraries(RAIDMonitoring PUBLIC ${pelago_library} ${registry})
if(pelago_include)
  # An installed library names the folder too, unless it lies within this project, which CMake refuses.
  cmake_path(IS_PREFIX PROJECT_SOURCE_DIR "${pelago_include}" NORMALIZE within)
  if(within)
    set(pelago_include $<BUILD_INTERFACE:${pelago_include}>)
  endif()
  target_include_directories(RAIDMonitoring INTERFACE ${pelago_include})
endif()
if(RAIDMONITORING_REGISTRY STREQUAL "iokit")
  # The public headers name the registry's types.
  target_compile_definitions(RAIDMonitoring INTERFACE RAIDMONITORING_REGISTRY_IOKIT)
endif()
