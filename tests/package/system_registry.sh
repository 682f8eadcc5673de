#!/usr/bin/env bash
# What is built for macOS compiles for the system's registry, against a stand-in for its headers: with
# the strict warnings, for both architectures' types, with nothing deprecated for old or new systems.
. "$(dirname "$0")/common.sh"

fresh system-registry
cd "$SOURCES"
warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast -Wformat=2 -Werror)

# 64-bit integers are other types there, as long as these.
types=$(echo '#include <bits/types.h>' | clang++ -x c++ -M - | tr ' ' '\n' | grep 'bits/types\.h')
mkdir -p "$WORK/system-registry/types/bits"
sed -E 's/^typedef (signed|unsigned) long int (__u?int64_t);/typedef \1 long long int \2;/' "$types" \
  >"$WORK/system-registry/types/bits/types.h"
if cmp -s "$types" "$WORK/system-registry/types/bits/types.h"; then fail "the types were not exchanged"; fi

# compile MINIMUM_SYSTEM OPTION FILES...
compile() {
  local system=$1 option=$2
  shift 2
  printf '%s\n' "$@" | xargs -P 2 -I{} clang++ -std=c++17 -fsyntax-only "${warnings[@]}" -I. -Iexamples -I"$BUILD/generated" \
    -isystem tests/package/fake-sdk -isystem "$WORK/system-registry/types" -DRAIDMONITORING_REGISTRY_IOKIT \
    -DMAC_OS_X_VERSION_MIN_REQUIRED="$system" "$option" {} ||
    fail "does not compile for macOS ${system%0000}"
}

sources=(monitor/*.cpp model/*.cpp thunderbolt/*.cpp platform/pelago/*.cpp platform/registry/*.cpp
  application/session/Discovery.cpp application/registries/LiveRegistry.cpp application/registries/LiveSource.cpp
  examples/iokit/*.cpp)
compile 110000 -DFAKE_UNSIGNED_BOOLEAN "${sources[@]}"

# The rest is the same for every system but where the registry's main port is named.
mapfile -t with_port < <(grep -l kIOMasterPortDefault "${sources[@]}")
[ "${#with_port[@]}" -ge 4 ] || fail "hardly a file names the main port"
for system in 120000 150000; do
  compile "$system" -DFAKE_SIGNED_BOOLEAN "${with_port[@]}"
done

# The stand-in is one that would notice: the old name, without its alias, is an error there.
echo '#include <IOKit/IOKitLib.h>
unsigned port() { return kIOMasterPortDefault; }' >"$WORK/system-registry/deprecated.cpp"
if (compile 120000 -DFAKE_SIGNED_BOOLEAN "$WORK/system-registry/deprecated.cpp") 2>/dev/null; then
  fail "what is deprecated passes"
fi

# The in-memory registry, which can be built there too, has no symbol of the system's: all of its are
# mangled.
for object in "$BUILD"/platform/registry/memory/CMakeFiles/raidmonitoring_memory_registry_objects.dir/*.o; do
  plain=$(nm --defined-only -g "$object" | awk '{ print $3 }' | grep -E '^_*(k?CF|k?IO)' || true)
  [ -z "$plain" ] || fail "${object##*/} defines $plain"
done

# The toolchain file for building from another system: libraries that are found by @rpath, with their
# export lists, for either architecture.
for architecture in x86_64 arm64; do
  cd "$WORK/system-registry"
  quietly "$CMAKE" -S "$SOURCES" -B "$architecture" -G Ninja \
    --toolchain "$SOURCES/cmake/toolchains/macos-cross.cmake" \
    -DMACOS_SDK="$SOURCES/tests/package/fake-sdk" -DMACOS_ARCHITECTURE="$architecture"
  ninja -C "$architecture" -n -v >"$architecture.log"
  for wanted in "-install_name @rpath/libRAIDMonitoring.1.dylib" "cmake/exports/RAIDMonitoring.exp" \
    "-arch $architecture" "-stdlib=libc++" "-mmacosx-version-min=11.0" "-framework IOKit" "-DRAIDMONITORING_REGISTRY_IOKIT"; do
    grep -qF -- "$wanted" "$architecture.log" || fail "the build for $architecture lacks $wanted"
  done
done
