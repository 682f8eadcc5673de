#!/usr/bin/env bash
# Every public header compiles by itself, under both compilers, with warnings as errors.
. "$(dirname "$0")/common.sh"

fresh headers
# The system's own registry has a test of its own, system_registry.sh.
headers=$(public_headers | grep -v /iokit/)

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
