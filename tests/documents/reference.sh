#!/usr/bin/env bash
# The reference comes out without a warning, and has every public header in it.
set -euo pipefail

rm -rf "$WORK/reference"
mkdir -p "$WORK/reference"
cd "$SOURCES"
(
  cat Doxyfile
  echo "OUTPUT_DIRECTORY = $WORK/reference"
  echo "PROJECT_NUMBER = $VERSION"
) | "$DOXYGEN" -

headers=$(grep -oE '[a-z/]+/[A-Za-z]+\.h' cmake/PublicHeaders.cmake)
[ "$(wc -w <<<"$headers")" -ge 30 ] || { echo "the list of public headers was not understood"; exit 1; }
for header in $headers; do
  grep -rqF ">${header##*/}<" "$WORK/reference/html/files.html" || { echo "not in the reference: $header"; exit 1; }
done
