#!/usr/bin/env bash
# Every installed header compiles by itself, and so does every example in its comments, as C++17, under
# both compilers, with warnings as errors. Examples that are whole programs run, and find nothing wrong.
. "$(dirname "$0")/common.sh"

fresh headers
include=$PREFIX/include/RAIDMonitoring
# The system's own registry has a test of its own, system_registry.sh.
public_headers | grep -v /iokit/ | sort >wanted.txt
(cd "$include" && find . -name '*.h' | sed 's|^\./||' | grep -v 'Export\.h$' | sort) >installed.txt
diff -u wanted.txt installed.txt || fail "other headers than the public ones are installed"

python3 "$SOURCES/tests/package/extract_examples.py" "$include" .
[ "$(grep -lE '^(class|struct|int|void|bool|const|std::|[A-Z])' ./*.cpp | wc -l)" -ge 15 ] || fail "the examples were not found"

warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast -Wformat=2 -Werror)
for compiler in g++ clang++; do
  printf '%s\n' ./*.cpp | xargs -P 2 -I{} "$compiler" -std=c++17 -fsyntax-only "${warnings[@]}" -I"$include" {} ||
    fail "not every header, or example in it, compiles with $compiler"
done

mapfile -t programs < <(grep -l '^int main()' ./*.cpp)
[ ${#programs[@]} -ge 3 ] || fail "the examples that are programs were not found"
for program in "${programs[@]}"; do
  quietly "$CXX" -std=c++17 -I"$include" "$program" -o program -L"$PREFIX/lib" -Wl,-rpath,"$PREFIX/lib" \
    -lRAIDMonitoring -lRAIDMonitoringRegistry -lPelago
  ./program || fail "the example in $program fails"
done
