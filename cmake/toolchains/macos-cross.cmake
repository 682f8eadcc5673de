# For macOS from another system, with clang and lld:
#   cmake -S . -B build/macos --toolchain cmake/toolchains/macos-cross.cmake -DMACOS_SDK=/path/to/MacOSX.sdk
#   MACOS_SDK           the SDK's folder, which the builder has
#   MACOS_ARCHITECTURE  x86_64 or arm64
#   MACOS_TARGET        the oldest system that the build is for
# What the program raidmonitor needs besides is rarely at hand for macOS: it is left out when
# cross-compiling, unless RAIDMONITORING_APPLICATION=ON asks for it.

set(MACOS_SDK "$ENV{MACOS_SDK}" CACHE PATH "The folder of the macOS SDK")
set(MACOS_ARCHITECTURE x86_64 CACHE STRING "x86_64 or arm64")
set(MACOS_TARGET 11.0 CACHE STRING "The oldest macOS that the build is for")
# The compiler's own checks read this file again, without the cache.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MACOS_SDK MACOS_ARCHITECTURE MACOS_TARGET)
if(NOT IS_DIRECTORY "${MACOS_SDK}")
  message(FATAL_ERROR "MACOS_SDK is the folder of a macOS SDK, not '${MACOS_SDK}'")
endif()

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_USER_MAKE_RULES_OVERRIDE ${CMAKE_CURRENT_LIST_DIR}/macos-rpath.cmake)
set(CMAKE_SYSTEM_PROCESSOR ${MACOS_ARCHITECTURE})
set(CMAKE_OSX_SYSROOT ${MACOS_SDK} CACHE PATH "")
set(CMAKE_OSX_ARCHITECTURES ${MACOS_ARCHITECTURE} CACHE STRING "")
set(CMAKE_OSX_DEPLOYMENT_TARGET ${MACOS_TARGET} CACHE STRING "")

# macos_tool(VARIABLE NAME): one of LLVM's tools, by its plain name or with a version behind it.
function(macos_tool variable name)
  file(GLOB folders /usr/lib/llvm-*/bin /opt/homebrew/opt/llvm/bin)
  list(SORT folders COMPARE NATURAL ORDER DESCENDING)
  find_program(${variable} ${name} HINTS ${folders} REQUIRED)
endfunction()
macos_tool(CMAKE_CXX_COMPILER clang++)
macos_tool(CMAKE_AR llvm-ar)
macos_tool(CMAKE_RANLIB llvm-ranlib)
macos_tool(CMAKE_STRIP llvm-strip)
macos_tool(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool)
macos_tool(MACOS_LINKER ld64.lld)

# Without a version, which CMAKE_OSX_DEPLOYMENT_TARGET gives: two that differ are an error.
set(CMAKE_CXX_COMPILER_TARGET ${MACOS_ARCHITECTURE}-apple-macos)
# The SDK's library. Some systems' clang takes their own, for every target.
set(CMAKE_CXX_FLAGS_INIT -stdlib=libc++)
set(CMAKE_EXE_LINKER_FLAGS_INIT --ld-path=${MACOS_LINKER})
set(CMAKE_SHARED_LINKER_FLAGS_INIT --ld-path=${MACOS_LINKER})
set(CMAKE_MODULE_LINKER_FLAGS_INIT --ld-path=${MACOS_LINKER})
# An SDK of headers alone is enough to compile.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

set(CMAKE_FIND_ROOT_PATH ${MACOS_SDK})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
