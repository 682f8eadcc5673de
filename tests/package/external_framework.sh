#!/usr/bin/env bash
# The library builds on a framework that somebody else has, given as a library's file or as a package's
# target; the framework's contract tests run against that, and so does a project that finds the two
# installed. Theirs is our own framework's objects and headers, linked anew under another name, so that
# what is taken from where shows.
. "$(dirname "$0")/common.sh"

fresh external-framework
mkdir -p theirs/include/platform theirs/lib/cmake/Theirs
cp -r "$PREFIX/include/RAIDMonitoring/platform/pelago" theirs/include/platform/
rm theirs/include/platform/pelago/Reference.h
"$CXX" -shared -Wl,-soname,libTheirs.so -o theirs/lib/libTheirs.so \
  "$BUILD"/platform/pelago/CMakeFiles/raidmonitoring_pelago_objects.dir/*.o
# A header that only they have, behind one that the library includes.
echo '#define THEIR_FRAMEWORK 1' >theirs/include/platform/pelago/Theirs.h
sed -i 's|#pragma once|#pragma once\n#include "platform/pelago/Theirs.h"|' theirs/include/platform/pelago/Object.h
cat >theirs/lib/cmake/Theirs/TheirsConfig.cmake <<'END'
get_filename_component(theirs "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
if(NOT TARGET Theirs::Framework)
  add_library(Theirs::Framework SHARED IMPORTED)
  set_target_properties(Theirs::Framework PROPERTIES
    IMPORTED_LOCATION ${theirs}/lib/libTheirs.so INTERFACE_INCLUDE_DIRECTORIES ${theirs}/include)
endif()
END

# configure FOLDER OPTIONS...
configure() {
  "$CMAKE" -S "$SOURCES" -B "$@" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS="-O0" -DCMAKE_BUILD_TYPE= \
    -DRAIDMONITORING_APPLICATION=OFF -DRAIDMONITORING_TESTS=ON -DRAIDMONITORING_PELAGO=external
}
# refuse WANTED OPTIONS...: whether a refusal names what is missing.
refuse() {
  if configure refused "${@:2}" >refused.log 2>&1; then fail "taken: ${*:2}"; fi
  grep -q "$1" refused.log || fail "the refusal does not say that $1 is missing: $(cat refused.log)"
}
headers=-DRAIDMONITORING_PELAGO_INCLUDE_DIR=$PWD/theirs/include
package=(-DRAIDMONITORING_PELAGO_PACKAGE=Theirs -DRAIDMONITORING_PELAGO_TARGET=Theirs::Framework)
refuse RAIDMONITORING_PELAGO_INCLUDE_DIR
refuse RAIDMONITORING_PELAGO_TARGET "$headers" -DRAIDMONITORING_PELAGO_TARGET=Theirs::Framework
refuse TheirsConfig.cmake "$headers" "${package[@]}"

# As a file: the build links it.
quietly configure as-file -G Ninja "$headers" -DRAIDMONITORING_PELAGO_TARGET="$PWD/theirs/lib/libTheirs.so"
ninja -C as-file -t commands RAIDMonitoring >as-file.txt
grep -q 'libRAIDMonitoring\.so.*theirs/lib/libTheirs\.so' as-file.txt ||
  fail "the library is not linked with the file"

# As a target of their package, and all the way.
quietly configure build "$headers" "${package[@]}" -DCMAKE_PREFIX_PATH="$PWD/theirs"
quietly "$CMAKE" --build build -j 2 --target RAIDMonitoring RAIDMonitoringRegistry pelago_tests
quietly ./build/tests/pelago/pelago_tests --gtest_brief=1
[ -z "$(find build -name 'libPelago*')" ] || fail "our own framework was built"
grep -rq Theirs.h build || fail "their headers were not used"

quietly "$CMAKE" --install build --prefix "$PWD/prefix"
[ ! -e prefix/include/RAIDMonitoring/platform/pelago/Object.h ] || fail "our framework's headers are installed"

# A project that knows the library's package alone gets theirs with it, and runs on it.
quietly "$CMAKE" -S "$SOURCES/examples" -B example -DCMAKE_PREFIX_PATH="$PWD/prefix;$PWD/theirs" \
  -DCMAKE_CXX_COMPILER="$CXX"
quietly "$CMAKE" --build example
expect_example example/watch_volumes
ldd example/watch_volumes | grep -q "libTheirs.so => $PWD/theirs/lib/libTheirs.so" || fail "the example does not run on theirs"
if ldd example/watch_volumes | grep -q Pelago; then fail "the example runs on our framework"; fi
