#!/usr/bin/env bash
# The example is built with nothing but a compiler and pkg-config.
. "$(dirname "$0")/common.sh"

fresh pkg-config
file=$(find "$PREFIX" -name RAIDMonitoring.pc)
export PKG_CONFIG_PATH=${file%/*}
# Words on purpose: these are lists of options.
# shellcheck disable=SC2046
quietly "$CXX" -std=c++17 $(pkg-config --cflags RAIDMonitoring) -I"$SOURCES/examples" \
  "$SOURCES/examples/WatchVolumes.cpp" "$SOURCES/examples/memory/Enclosure.cpp" \
  -o watch_volumes $(pkg-config --libs RAIDMonitoring)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir RAIDMonitoring) expect_example ./watch_volumes
