#!/usr/bin/env bash
# The reference comes out without a warning, and has every public header in it.
set -euo pipefail

fail() {
  echo "$*" >&2
  exit 1
}

rm -rf "$WORK/reference"
mkdir -p "$WORK/reference"
"$SOURCES/scripts/reference" "$WORK/reference"

headers=$(grep -oE '[a-z/]+/[A-Za-z]+\.h' "$SOURCES/cmake/PublicHeaders.cmake")
[ "$(wc -w <<<"$headers")" -ge 30 ] || fail "the list of public headers was not understood"
for header in $headers; do
  grep -rqF ">${header##*/}<" "$WORK/reference/html/files.html" || fail "not in the reference: $header"
done
grep -q "projectnumber.*$VERSION" "$WORK/reference/html/index.html" || fail "the reference has another version"

# A comment holds for all that stands below it, whose documentation it is.
page=$WORK/reference/html/classRAIDMonitoring_1_1RAIDMonitor.html
[ "$(grep -cE '<p ?>Starts and stops the periodic refresh' "$page")" = 2 ] ||
  fail "a comment does not hold for what stands below it"

# What has no comment is found.
cd "$WORK/reference"
printf '#pragma once\n// Has a comment.\nstruct Known {\n  int unknown = 0;\n};\n' >Bare.h
if (cd "$SOURCES" && { cat Doxyfile; echo "INPUT=$WORK/reference/Bare.h"; echo "OUTPUT_DIRECTORY=$WORK/reference/bare"; } |
  "$DOXYGEN" - 2>"$WORK/reference/bare.log"); then
  fail "what has no comment passes"
fi
grep -q 'Member unknown' bare.log || fail "found is something else: $(cat bare.log)"
