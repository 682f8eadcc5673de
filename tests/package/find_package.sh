#!/usr/bin/env bash
# The example, as a project of its own, finds the installed library.
. "$(dirname "$0")/common.sh"

fresh find-package
quietly "$CMAKE" -S "$SOURCES/examples" -B . -DCMAKE_PREFIX_PATH="$PREFIX" -DCMAKE_CXX_COMPILER="$CXX"
quietly "$CMAKE" --build .
expect_example ./watch_volumes
