# How everything of this project is compiled. An interface target, linked privately, so that nothing
# of it reaches a project that builds on this one.

add_library(raidmonitoring_options INTERFACE)
target_compile_features(raidmonitoring_options INTERFACE cxx_std_17)
target_include_directories(raidmonitoring_options INTERFACE
  ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
target_compile_options(raidmonitoring_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast -Wformat=2
  $<$<BOOL:${RAIDMONITORING_WERROR}>:-Werror>)
if(RAIDMONITORING_REGISTRY STREQUAL "iokit")
  target_compile_definitions(raidmonitoring_options INTERFACE RAIDMONITORING_REGISTRY_IOKIT)
elseif(NOT RAIDMONITORING_REGISTRY STREQUAL "memory")
  message(FATAL_ERROR "RAIDMONITORING_REGISTRY is iokit or memory, not '${RAIDMONITORING_REGISTRY}'")
endif()

if(RAIDMONITORING_SANITIZE)
  set(sanitize -fsanitize=${RAIDMONITORING_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(raidmonitoring_options INTERFACE ${sanitize})
  target_link_options(raidmonitoring_options INTERFACE ${sanitize})
endif()
if(RAIDMONITORING_COVERAGE)
  target_compile_options(raidmonitoring_options INTERFACE --coverage -O0)
  target_link_options(raidmonitoring_options INTERFACE --coverage)
endif()

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES AND PROJECT_IS_TOP_LEVEL)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()
