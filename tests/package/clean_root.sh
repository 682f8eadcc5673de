#!/usr/bin/env bash
# The Debian packages in a clean root, by dpkg itself: refused without what they need, installed with it,
# their program run and a stranger's project built there, and taken out again without a trace. That root
# is changed into, which asks for the rights to do so, of root or of a user namespace's root; without, the
# test says so and is skipped.
. "$(dirname "$0")/common.sh"

fresh clean-root
as_root=()
if [ "$(id -u)" != 0 ]; then as_root=(unshare --map-root-user); fi
if ! "${as_root[@]}" chroot / true 2>chroot.log; then
  echo "SKIPPED: nobody may change the root folder here: $(cat chroot.log)" >&2
  exit 77
fi

packages=("$WORK"/debian/*.deb)
[ ${#packages[@]} = 3 ] || fail "there are not three packages"
needed=$(for package in "${packages[@]}"; do dpkg-deb -f "$package" Depends; done |
  tr ',' '\n' | sed 's/^ *//; s/ .*//' | grep -v '^$\|raidmonitoring' | sort -u)
# Words on purpose: these are names.
# shellcheck disable=SC2086
"${as_root[@]}" python3 "$SOURCES/tests/package/clean_root.py" "$PWD/root" \
  g++ cmake ninja-build pkg-config $needed

# inside COMMAND...: in the clean root, with nothing of this environment.
inside() {
  "${as_root[@]}" chroot "$PWD/root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/tmp \
    DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@"
}

# contents: every file of the root that is not a record of dpkg's or the linker's, or a temporary one.
contents() {
  (cd root && find . -path ./tmp -prune -o -path ./var/lib/dpkg -prune -o -path ./var/log -prune -o \
    -path ./var/cache/ldconfig -prune -o -name '*__pycache__*' -prune -o -print | LC_ALL=C sort)
}

# A device for what nobody reads; where none may be made, a file does.
"${as_root[@]}" mknod -m 666 root/dev/null c 1 3 2>/dev/null || : >root/dev/null
inside ldconfig
[ -z "$(inside dpkg --audit)" ] || fail "the clean root is not sound: $(inside dpkg --audit)"
mkdir root/tmp/packages
cp "${packages[@]}" root/tmp/packages/

# Without the libraries the program is refused.
if inside sh -c 'dpkg -i /tmp/packages/raidmonitor_*.deb' >refused.log 2>&1; then
  fail "the program is installed without its libraries"
fi
grep -q 'depends on libraidmonitoring' refused.log || fail "refused for another reason: $(cat refused.log)"
quietly inside dpkg --purge raidmonitor
# dpkg's first steps in the new root have told of files that were there before.
quietly inside dpkg --configure --pending
contents >before.txt

quietly inside sh -c 'dpkg -i /tmp/packages/*.deb'
[ -z "$(inside dpkg --audit)" ] || fail "not installed soundly: $(inside dpkg --audit)"
[ -z "$(inside dpkg --verify raidmonitor libraidmonitoring-dev "libraidmonitoring${VERSION%%.*}")" ] ||
  fail "the installed files are others than those packed"

# The linker knows the libraries by itself, and the program runs.
[ "$(inside raidmonitor --version)" = "raidmonitor $VERSION" ] || fail "the installed program is another"
inside raidmonitor list >list.txt 2>list.log || fail "raidmonitor list: $(cat list.log)"
grep -q Projects list.txt || fail "the installed program does not know its recording"

# A stranger's project, found by CMake and by pkg-config.
example=/usr/share/doc/libraidmonitoring-dev/examples
quietly inside cmake -G Ninja -S "$example" -B /tmp/example
quietly inside cmake --build /tmp/example
expect_example inside /tmp/example/watch_volumes
quietly inside sh -c "g++ -std=c++17 -I$example $example/WatchVolumes.cpp $example/memory/Enclosure.cpp \
  -o /tmp/by_pkg_config \$(pkg-config --cflags --libs RAIDMonitoring)"
expect_example inside /tmp/by_pkg_config

# And away with them.
quietly inside dpkg --purge raidmonitor libraidmonitoring-dev "libraidmonitoring${VERSION%%.*}"
contents >after.txt
diff -u before.txt after.txt || fail "something is left behind, or gone"
if inside ldconfig -p | grep -q RAIDMonitoring; then fail "the linker still knows the libraries"; fi
"${as_root[@]}" rm -rf root
