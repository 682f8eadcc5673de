#!/usr/bin/env bash
# Installs the build into an empty folder and looks that everything is there.
. "$(dirname "$0")/common.sh"

fresh prefix
(cd "$WORK" && quietly "$CMAKE" --install "$BUILD" --prefix "$PREFIX")

for wanted in \
  "libRAIDMonitoring.so*" "libPelago.so*" "libRAIDMonitoringRegistry.so*" \
  raidmonitor raidmonitor.1 RAIDMonitoring.3 RAIDMonitoring.pc RAIDMonitoringConfig.cmake \
  RAIDMonitorClient.h RAIDMonitoringExport.h 00000.plist README.md index.md \
  raidmonitor.cfg raidmonitor.conf raidmonitor.rules.yml; do
  [ -n "$(find . -name "$wanted")" ] || fail "not installed: $wanted"
done

# Beneath one folder of the library's own, so that nobody's headers clash with them.
[ "$(ls include)" = RAIDMonitoring ] || fail "include/ holds: $(ls include)"

# The tree works where it was put, and from where it is moved to.
mv "$PREFIX" "$PREFIX.moved"
"$PREFIX.moved/bin/raidmonitor" --version
mv "$PREFIX.moved" "$PREFIX"
recording=$(dirname "$(find . -name 00000.plist)")
bin/raidmonitor list --registry "$recording" 2>/dev/null | grep -q Projects ||
  fail "the installed demo recording does not play"
