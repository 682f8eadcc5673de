#!/usr/bin/env bash
# The project builds with static libraries, its program too; both are installed, and the libraries are
# found, by CMake and by pkg-config, and are enough.
. "$(dirname "$0")/common.sh"

fresh static
# cached NAME: as the build is set up whose objects are taken.
cached() {
  sed -n "s/^$1:[A-Z]*=//p" "$BUILD/CMakeCache.txt"
}
type=$(cached CMAKE_BUILD_TYPE)
flags=CMAKE_CXX_FLAGS_$(tr '[:lower:]' '[:upper:]' <<<"$type")
# The program's objects are those of the build at hand, where nothing else is asked of the compiler; the
# libraries', in which nothing is marked for export now, are made anew.
export REUSE_HERE=$PWD REUSE_THERE=$BUILD REUSE_COMMANDS=$BUILD/compile_commands.json
export REUSE_BENEATH=application/ REUSE_ELSE="-O0 -g0"
quietly "$CMAKE" -S "$SOURCES" -B . -G Ninja -DCMAKE_CXX_COMPILER="$CXX" -DBUILD_SHARED_LIBS=OFF \
  -DCMAKE_BUILD_TYPE="$type" -DCMAKE_CXX_FLAGS="$(cached CMAKE_CXX_FLAGS)" "-D$flags=$(cached "$flags")" \
  -DCMAKE_CXX_COMPILER_LAUNCHER="$SOURCES/tests/package/reuse_objects.py"
quietly "$CMAKE" --build . -j 2
[ -z "$(find . -name 'lib*.so*')" ] || fail "a shared library was built"

prefix=$PWD/installed
quietly "$CMAKE" --install . --prefix "$prefix"
if ldd "$prefix/bin/raidmonitor" | grep -qE 'Pelago|RAIDMonitoring'; then fail "the program is not static"; fi
"$prefix/bin/raidmonitor" list >static.txt || fail "the static program does not run"
"$BUILD/application/raidmonitor" list | diff -u - static.txt || fail "the static program says something else"
libraries=$(cd "$prefix" && find . -name 'lib*' -type f -exec basename {} \; | sort | tr '\n' ' ')
[ "$libraries" = "libPelago.a libRAIDMonitoring.a libRAIDMonitoringRegistry.a " ] || fail "installed is: $libraries"

quietly "$CMAKE" -S "$SOURCES/examples" -B found -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$CXX"
quietly "$CMAKE" --build found
expect_example found/watch_volumes
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name RAIDMonitoring.pc)")
export PKG_CONFIG_PATH
# Words on purpose: these are lists of options.
# shellcheck disable=SC2046
quietly "$CXX" -std=c++17 $(pkg-config --static --cflags RAIDMonitoring) -I"$SOURCES/examples" \
  "$SOURCES/examples/WatchVolumes.cpp" "$SOURCES/examples/memory/Enclosure.cpp" \
  -o by_pkg_config $(pkg-config --static --libs RAIDMonitoring)
expect_example ./by_pkg_config
