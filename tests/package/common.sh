# Sourced by the scripts of this folder.
set -euo pipefail

# fresh NAME: an empty folder of that name for this test, which becomes the current one.
fresh() {
  rm -rf "${WORK:?}/$1"
  mkdir -p "$WORK/$1"
  cd "$WORK/$1"
}

fail() {
  echo "$*" >&2
  exit 1
}

# quietly COMMAND...: what it says is shown when it fails.
quietly() {
  "$@" >quietly.log 2>&1 || { cat quietly.log >&2; fail "failed: $*"; }
}

# public_headers: the list that the installation goes by, also for the other registry.
public_headers() {
  local headers
  headers=$(grep -oE '[a-z/]+/[A-Za-z]+\.h' "$SOURCES/cmake/PublicHeaders.cmake")
  [ "$(wc -w <<<"$headers")" -ge 30 ] || fail "the list of public headers was not understood"
  echo "$headers"
}

# expect_example PROGRAM: runs the example and compares what it says.
expect_example() {
  "$@" >example.txt
  diff -u "$SOURCES/tests/package/example.txt" example.txt || fail "$1 does not say what it should"
}
