#!/usr/bin/env bash
# The Debian packages: lintian finds nothing to say of them, no two have the same file, and they ask for
# what they need. They stay in $WORK/debian for clean_root.sh.
. "$(dirname "$0")/common.sh"

fresh debian
quietly cpack --config "$BUILD/CPackConfig.cmake" -B "$PWD/packages"
mv packages/*.deb .
rm -r packages
[ "$(ls ./*.deb | wc -l)" = 3 ] || fail "not three packages: $(ls ./*.deb)"

lintian --fail-on error,warning ./*.deb >lintian.log 2>&1 || fail "$(cat lintian.log)"

dpkg-deb -f raidmonitor_*.deb Depends | grep "libraidmonitoring${VERSION%%.*}" | grep -q libc6 ||
  fail "the program does not ask for what it needs"

for package in ./*.deb; do
  dpkg-deb --fsys-tarfile "$package" | tar -t | grep -v '/$' >"${package%%_*}.files"
done
twice=$(cat ./*.files | sort | uniq -d)
[ -z "$twice" ] || fail "in two packages: $twice"

# Where Debian's own shells look.
for file in bash-completion/completions/raidmonitor zsh/vendor-completions/_raidmonitor \
  fish/vendor_completions.d/raidmonitor.fish; do
  grep -q "/usr/share/$file$" raidmonitor.files || fail "not packaged: $file"
done
