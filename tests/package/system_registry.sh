#!/usr/bin/env bash
# What is built for macOS compiles for the system's registry, against a stand-in for its headers: with
# the strict warnings, on libc++, for both architectures' types, with nothing deprecated for old or new
# systems.
. "$(dirname "$0")/common.sh"

fresh system-registry
work=$PWD
# What a build on the system's registry compiles.
quietly "$CMAKE" -S "$SOURCES" -B sources -G Ninja -DRAIDMONITORING_REGISTRY=iokit \
  -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
sources=$(grep -oE "\"file\": \"[^\"]+" sources/compile_commands.json | cut -d '"' -f 4)
for made in $(grep "^$PWD/sources/" <<<"$sources"); do
  quietly ninja -C sources "${made#"$PWD/sources/"}"
done

cd "$SOURCES"
warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast -Wformat=2 -Werror)

# 64-bit integers are other types there, as long as these.
types=$(echo '#include <bits/types.h>' | clang++ -x c++ -M - | tr ' ' '\n' | grep 'bits/types\.h')
mkdir -p "$work/types/bits"
sed -E 's/^typedef (signed|unsigned) long int (__u?int64_t);/typedef \1 long long int \2;/' "$types" \
  >"$work/types/bits/types.h"
if cmp -s "$types" "$work/types/bits/types.h"; then fail "the types were not exchanged"; fi

# check OPTIONS... -- FILES...: compiles them, named with their whole paths, with the standard library that
# is macOS's. What each includes stands in its file beneath depends/.
check() {
  local options=()
  while [ "$1" != -- ]; do
    options+=("$1")
    shift
  done
  shift
  dirname "$@" | sort -u | sed "s|^|$work/depends|" | xargs mkdir -p
  printf '%s\n' "$@" | xargs -P 2 -I{} clang++ -std=c++17 -stdlib=libc++ -fsyntax-only "${warnings[@]}" \
    -I. -Iexamples -I"$BUILD/generated" -isystem "$work/types" -MD -MF "$work/depends{}.d" "${options[@]}" {}
}

# compile MINIMUM_SYSTEM BOOLEAN FILES...: with a boolean_t as on x86_64 (UNSIGNED) or on arm64 (SIGNED).
compile() {
  check -isystem tests/package/fake-sdk -DRAIDMONITORING_REGISTRY_IOKIT -DMAC_OS_X_VERSION_MIN_REQUIRED="$1" \
    -DFAKE_"$2"_BOOLEAN -- "${@:3}" || fail "does not compile for macOS ${1%0000}"
}

# The library, the program, the example and the public headers by themselves: all for the newest system,
# and then for the oldest what includes anything of the system's, which alone can differ.
mapfile -t files < <(cat <<<"$sources"; ls "$SOURCES"/examples/iokit/*.cpp)
[ "$(grep -c /application/ <<<"$sources")" -ge 25 ] && [ ${#files[@]} -ge 120 ] || fail "the sources were not found"
for header in $(public_headers | grep -v /memory/); do
  alone=$work/alone-${header//\//-}.cpp
  echo "#include \"$header\"" >"$alone"
  files+=("$alone")
done
compile 150000 SIGNED "${files[@]}"
grep -rlq /c++/v1/ "$work/depends" || fail "another standard library than libc++ was taken"
mapfile -t of_system < <(grep -rl fake-sdk/ "$work/depends" | sed "s|^$work/depends||; s|\.d\$||")
for wanted in model/RAIDVolume.cpp application/record/RegistryReader.cpp application/session/Discovery.cpp; do
  printf '%s\n' "${of_system[@]}" | grep -qx "$SOURCES/$wanted" || fail "$wanted is said to include nothing of the system's"
done
compile 110000 UNSIGNED "${of_system[@]}"

# What replays recordings there, on that standard library too.
memory=$SOURCES/platform/registry/memory
check -- "$memory"/*.cpp "$memory"/archive/*.cpp "$SOURCES/application/registries/MemoryRegistries.cpp" ||
  fail "the in-memory registry does not compile with libc++"

# The stand-in is one that would notice: what is deprecated is an error there, and what is too new.
refused() {
  printf '#include <IOKit/IOKitLib.h>\nunsigned port() { return %s; }\n' "$1" >"$work/refused.cpp"
  if (compile "$2" SIGNED "$work/refused.cpp") 2>/dev/null; then fail "$1 passes for macOS $2"; fi
}
refused kIOMasterPortDefault 120000
refused kIOMainPortDefault 110000

# The in-memory registry, which can be built there too, has no symbol of the system's: all of its are
# mangled.
for object in "$BUILD"/platform/registry/memory/CMakeFiles/raidmonitoring_memory_registry_objects.dir/*.o; do
  plain=$(nm --defined-only -g "$object" | awk '{ print $3 }' | grep -E '^_*(k?CF|k?IO)' || true)
  [ -z "$plain" ] || fail "${object##*/} defines $plain"
done

# The toolchain file for building from another system: libraries that are found by @rpath, with their
# export lists, for either architecture.
for architecture in x86_64 arm64; do
  cd "$work"
  quietly "$CMAKE" -S "$SOURCES" -B "$architecture" -G Ninja \
    --toolchain "$SOURCES/cmake/toolchains/macos-cross.cmake" \
    -DMACOS_SDK="$SOURCES/tests/package/fake-sdk" -DMACOS_ARCHITECTURE="$architecture"
  ninja -C "$architecture" -t commands >"$architecture.log"
  for wanted in "-install_name @rpath/libRAIDMonitoring.1.dylib" "cmake/exports/RAIDMonitoring.exp" \
    "-arch $architecture" "-stdlib=libc++" "-mmacosx-version-min=11.0" "-framework IOKit" "-DRAIDMONITORING_REGISTRY_IOKIT"; do
    grep -qF -- "$wanted" "$architecture.log" || fail "the build for $architecture lacks $wanted"
  done
done
