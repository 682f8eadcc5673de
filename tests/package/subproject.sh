#!/usr/bin/env bash
# A project fetches the library into its own build, linked statically, and is left as it was.
. "$(dirname "$0")/common.sh"

fresh subproject
quietly "$CMAKE" -S "$SOURCES/tests/package/outside" -B . -DRAIDMONITORING_SOURCES="$SOURCES" \
  -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
quietly "$CMAKE" --build . -j 2
expect_example ./watch_volumes

# The library's own warnings and folders are not the outer project's.
grep -A2 '"command".*WatchVolumes.cpp' compile_commands.json >command.txt
if grep -qE -- '-Werror|-Wold-style-cast' command.txt; then fail "warnings leak: $(cat command.txt)"; fi
[ -z "$(find . -name 'lib*.so')" ] || fail "a shared library was built"
if ldd ./watch_volumes | grep -qE 'Pelago|RAIDMonitoring'; then fail "the program is not static"; fi

# Nothing of the library is installed with the outer project.
quietly "$CMAKE" --install . --prefix "$PWD/installed"
[ ! -e installed ] || fail "the outer project installs $(find installed -type f)"
