#!/usr/bin/env bash
# Every public header compiles by itself, under both compilers, with warnings as errors.
. "$(dirname "$0")/common.sh"

fresh headers
# The list that the installation goes by.
headers=$(sed -nE 's|^ *([a-z/]+/[A-Za-z]+\.h)\)?$|\1|p' "$SOURCES/cmake/PublicHeaders.cmake" | grep -v /iokit/)
[ "$(wc -w <<<"$headers")" -ge 30 ] || fail "the list of public headers was not understood"

warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast -Wformat=2 -Werror)
status=0
for header in $headers; do
  echo "#include \"$header\"" >alone.cpp
  for compiler in g++ clang++; do
    "$compiler" -std=c++17 -fsyntax-only "${warnings[@]}" -I"$SOURCES" -I"$BUILD/generated" alone.cpp ||
      { echo "$header does not compile by itself with $compiler" >&2; status=1; }
  done
done
exit $status
