#!/usr/bin/env bash
# The version has one home, and everybody reads it from there.
. "$(dirname "$0")/common.sh"

fresh versions
file=$(find "$PREFIX" -name RAIDMonitoring.pc)
said=$(PKG_CONFIG_PATH=${file%/*} pkg-config --modversion RAIDMonitoring)
[ "$said" = "$VERSION" ] || fail "pkg-config says $said"
said=$("$PREFIX/bin/raidmonitor" --version)
[ "$said" = "raidmonitor $VERSION" ] || fail "the program says $said"
grep -q "\"raidmonitor $VERSION\"" "$PREFIX/share/man/man1/raidmonitor.1" || fail "the man page says another version"

# What people read says the same: the newest entry of the changelog, and the major version to look for.
newest=$(grep -E '^## \[[0-9]' "$SOURCES/CHANGELOG.md" | head -1)
[[ $newest =~ ^"## [$VERSION] - "[0-9]{4}-[0-9]{2}-[0-9]{2}$ ]] || fail "the changelog's newest version: $newest"
[[ $VERSION =~ ^(0|[1-9][0-9]*)\.(0|[1-9][0-9]*)\.(0|[1-9][0-9]*)$ ]] || fail "no semantic version: $VERSION"
asked=$(grep -rhoE 'find_package\(RAIDMonitoring [0-9.]+' "$SOURCES"/*.md "$SOURCES/docs" "$SOURCES/examples" | sort -u)
[ "$asked" = "find_package(RAIDMonitoring ${VERSION%%.*}" ] || fail "the documents ask for: $asked"

# found WANTED: whether find_package finds that version.
found() {
  cat >CMakeLists.txt <<END
cmake_minimum_required(VERSION 3.25)
project(versions LANGUAGES NONE)
find_package(RAIDMonitoring $1 CONFIG REQUIRED)
if(NOT RAIDMonitoring_VERSION STREQUAL "$VERSION")
  message(FATAL_ERROR "found \${RAIDMonitoring_VERSION}")
endif()
END
  "$CMAKE" -S . -B "build-$1" -DCMAKE_PREFIX_PATH="$PREFIX" >"found-$1.log" 2>&1
}
major=${VERSION%%.*}
found "$major" || fail "version $major is not found"
found "$VERSION" || fail "version $VERSION is not found"
if found "$((major + 1))"; then fail "a later major version is found"; fi
if found "$((major - 1))"; then fail "an earlier major version is found"; fi
