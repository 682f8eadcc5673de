#!/usr/bin/env bash
# The Debian packages: lintian finds no error in them, they unpack into a clean root, and there
# the program runs and a stranger's project builds.
. "$(dirname "$0")/common.sh"

fresh debian
quietly cpack --config "$BUILD/CPackConfig.cmake" -B "$PWD/packages"
mv packages/*.deb .
rm -r packages
[ "$(ls ./*.deb | wc -l)" = 3 ] || fail "not three packages: $(ls ./*.deb)"

lintian --fail-on error ./*.deb >lintian.log 2>&1 || fail "$(cat lintian.log)"

dpkg-deb -f raidmonitor_*.deb Depends | grep "libraidmonitoring${VERSION%%.*}" | grep -q libc6 ||
  fail "the program does not ask for what it needs"

# A root with nothing in it. No two packages may have one file, and each has what it says.
root=$PWD/root
mkdir "$root" control
for package in ./*.deb; do
  dpkg-deb -x "$package" "$root"
  dpkg-deb -e "$package" "control/${package%%_*}"
  (cd "$root" && md5sum --quiet -c "$OLDPWD/control/${package%%_*}/md5sums")
done
twice=$(cat control/*/md5sums | cut -c 35- | sort | uniq -d)
[ -z "$twice" ] || fail "in two packages: $twice"

export LD_LIBRARY_PATH=$root/usr/lib
"$root/usr/bin/raidmonitor" --version | grep -qx "raidmonitor $VERSION" || fail "the installed program is another"
quietly "$CMAKE" -S "$root/usr/share/doc/libraidmonitoring-dev/examples" -B example \
  -DCMAKE_PREFIX_PATH="$root/usr" -DCMAKE_CXX_COMPILER="$CXX"
quietly "$CMAKE" --build example
grep -q "RAIDMonitoring_DIR:PATH=$root" example/CMakeCache.txt || fail "another installation was found"
expect_example ./example/watch_volumes
