#!/usr/bin/env bash
# A project has the library within its own build and is left as it was: by add_subdirectory, and fetched,
# when it installs the library along with itself.
. "$(dirname "$0")/common.sh"

# build HOW [OPTIONS...]: the outer project in a folder of that name.
build() {
  local how=$1
  shift
  fresh "subproject-$how"
  quietly "$CMAKE" -S "$SOURCES/tests/package/outside" -B . -DHOW="$how" \
    -DRAIDMONITORING_SOURCES="$SOURCES" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS_DEBUG="-O0" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON "$@"
  quietly "$CMAKE" --build . -j 2
  expect_example ./programs/watch_volumes

  # The library's own warnings, definitions and standard are not the outer project's, nor the reverse.
  grep '"command".*watch_volumes.dir' compile_commands.json >command.txt ||
    fail "nothing is known of how the outer project is compiled"
  if grep -qE -- '-Werror|-Wold-style-cast' command.txt; then fail "warnings leak: $(cat command.txt)"; fi
  grep -q -- '-std=gnu++20' command.txt || fail "the outer project's standard is changed: $(cat command.txt)"
  ctest -N | grep -q 'Total Tests: 1$' || fail "the outer project's tests are not its own: $(ctest -N)"
}

build subdirectory
quietly "$CMAKE" --install . --prefix "$PWD/installed"
[ "$(cd installed && find . -type f)" = ./bin/watch_volumes ] ||
  fail "with the outer project is installed: $(find installed -type f)"

# What is compiled in the same way is not compiled again.
export REUSE_HERE=$WORK/subproject-fetched/_deps/raidmonitoring-build
export REUSE_THERE=$WORK/subproject-subdirectory/raidmonitoring
export REUSE_COMMANDS=$WORK/subproject-subdirectory/compile_commands.json
build fetched -DRAIDMONITORING_INSTALL=ON -DCMAKE_CXX_COMPILER_LAUNCHER="$SOURCES/tests/package/reuse_objects.py"
prefix=$PWD/installed
quietly "$CMAKE" --install . --prefix "$prefix"
for wanted in watch_volumes libRAIDMonitoring.so RAIDMonitoringConfig.cmake RAIDMonitor.h; do
  [ -n "$(find "$prefix" -name "$wanted")" ] || fail "not installed: $wanted"
done
quietly "$CMAKE" -S "$SOURCES/examples" -B found -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$CXX"
quietly "$CMAKE" --build found
expect_example found/watch_volumes
