#!/usr/bin/env bash
# The shared libraries show what the lists in symbols/ say, and nothing else. After a change that is
# meant: tests/package/symbols.sh --update PREFIX
. "$(dirname "$0")/common.sh"

exported() {
  nm -D --defined-only -C "$1" | cut -c 20- | LC_ALL=C sort -u
}

lists=$(cd "$(dirname "$0")/symbols" && pwd)
if [ "${1:-}" = --update ]; then
  for library in Pelago RAIDMonitoring RAIDMonitoringRegistry; do
    exported "$(find "$2" -name "lib$library.so" -print -quit)" >"$lists/$library.txt"
  done
  exit
fi

fresh symbols
status=0
for library in Pelago RAIDMonitoring RAIDMonitoringRegistry; do
  exported "$(find "$PREFIX" -name "lib$library.so")" >"$library.txt"
  diff -u "$lists/$library.txt" "$library.txt" || status=1
done
[ $status = 0 ] || fail "other symbols than intended"
