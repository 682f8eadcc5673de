# The shared libraries: the framework, off macOS the in-memory registry, and the product on top.

function(add_shared name output)
  add_library(${name} SHARED)
  target_link_libraries(${name} PRIVATE raidmonitoring_options ${ARGN})
  set_target_properties(${name} PROPERTIES
    OUTPUT_NAME ${output}
    LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(${name} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>)
  target_compile_features(${name} INTERFACE cxx_std_17)
endfunction()

add_shared(Pelago Pelago pelago_objects)
add_export_header(Pelago platform/pelago Pelago)

if(RAIDMONITORING_REGISTRY STREQUAL "memory")
  add_shared(RAIDMonitoringRegistry RAIDMonitoringRegistry memory_registry_objects)
  add_export_header(RAIDMonitoringRegistry platform/registry/memory MemoryRegistry)
  set(registry RAIDMonitoringRegistry)
else()
  set(registry "-framework IOKit" "-framework CoreFoundation")
endif()

add_shared(RAIDMonitoring RAIDMonitoring
  monitor_objects thunderbolt_objects model_objects registry_utilities_objects)
add_export_header(RAIDMonitoring . RAIDMonitoring)
target_link_libraries(RAIDMonitoring PUBLIC Pelago ${registry})
