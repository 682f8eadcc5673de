#!/usr/bin/env bash
# The library builds on a framework that somebody else has, and the framework's contract tests run
# against that. Theirs is a copy of ours under another name, so that what is taken from where shows.
. "$(dirname "$0")/common.sh"

fresh external-framework
mkdir -p theirs/include/platform theirs/lib
cp -r "$PREFIX/include/RAIDMonitoring/platform/pelago" theirs/include/platform/
rm theirs/include/platform/pelago/Reference.h
cp "$(find "$PREFIX" -name 'libPelago.so.*.*')" theirs/lib/libPelago.so.1
ln -s libPelago.so.1 theirs/lib/libTheirs.so
# A header that only they have, behind one that the library includes.
echo '#define THEIR_FRAMEWORK 1' >theirs/include/platform/pelago/Theirs.h
sed -i 's|#pragma once|#pragma once\n#include "platform/pelago/Theirs.h"|' theirs/include/platform/pelago/Object.h

configure() {
  "$CMAKE" -S "$SOURCES" -B build -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS="-O0" \
    -DRAIDMONITORING_APPLICATION=OFF -DRAIDMONITORING_TESTS=ON -DRAIDMONITORING_PELAGO=external "$@"
}
if configure >refused.log 2>&1; then fail "an external framework without headers is taken"; fi
grep -q RAIDMONITORING_PELAGO_INCLUDE_DIR refused.log || fail "the refusal does not say what is missing"

quietly configure -DRAIDMONITORING_PELAGO_INCLUDE_DIR="$PWD/theirs/include" \
  -DRAIDMONITORING_PELAGO_TARGET="$PWD/theirs/lib/libTheirs.so"
quietly "$CMAKE" --build build -j 2 --target RAIDMonitoring pelago_tests
quietly ./build/tests/pelago/pelago_tests --gtest_brief=1

[ -z "$(find build -name 'libPelago*')" ] || fail "our own framework was built"
grep -rq Theirs.h build || fail "their headers were not used"

quietly "$CMAKE" --install build --prefix "$PWD/prefix" --component development
[ ! -e prefix/include/RAIDMonitoring/platform/pelago/Object.h ] || fail "our framework's headers are installed"
