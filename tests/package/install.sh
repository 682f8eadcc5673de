#!/usr/bin/env bash
# Installs the build into an empty folder and looks that everything is there.
. "$(dirname "$0")/common.sh"

fresh prefix
(cd "$WORK" && quietly "$CMAKE" --install "$BUILD" --prefix "$PREFIX")

for wanted in \
  "libRAIDMonitoring.so*" "libPelago.so*" "libRAIDMonitoringRegistry.so*" \
  raidmonitor raidmonitor.1 raidmonitor-watch.1 _raidmonitor raidmonitor.fish \
  RAIDMonitoring.3 RAIDMonitoring.pc RAIDMonitoringConfig.cmake \
  RAIDMonitorClient.h RAIDMonitoringExport.h 00000.plist README.md index.md \
  raidmonitor.cfg raidmonitor.conf raidmonitor.rules.yml raidmonitor.toml \
  org.example.raidmonitor.plist; do
  [ -n "$(find . -name "$wanted")" ] || fail "not installed: $wanted"
done

# Beneath one folder of the library's own, so that nobody's headers clash with them.
[ "$(ls include)" = RAIDMonitoring ] || fail "include/ holds: $(ls include)"

# The tree works where it was put, and from where it is moved to.
mv "$PREFIX" "$PREFIX.moved"
"$PREFIX.moved/bin/raidmonitor" --version
mv "$PREFIX.moved" "$PREFIX"
recording=$(dirname "$(find . -name 00000.plist)")
bin/raidmonitor list --registry "$recording" 2>/dev/null | grep -q Projects ||
  fail "the installed demo recording does not play"

# Shells find what they need to complete the command line, in the installed tree as it is.
offered=$(XDG_DATA_DIRS=$PREFIX/share bash --norc -c '. /usr/share/bash-completion/bash_completion
  _completion_loader raidmonitor; COMP_WORDS=(raidmonitor wa) COMP_CWORD=1; _raidmonitor; echo "${COMPREPLY[@]}"')
[ "$offered" = watch ] || fail "bash offers: $offered"
offered=$(PATH=$PREFIX/bin:$PATH XDG_DATA_DIRS=$PREFIX/share fish -c 'complete -C "raidmonitor wa"')
[[ $offered = watch* ]] || fail "fish offers: $offered"
zsh -fc "fpath=('$PREFIX/share/zsh/site-functions' \$fpath); autoload -Uz compinit; compinit -u -D
  [[ \$_comps[raidmonitor] == _raidmonitor ]]" || fail "zsh does not find the completions"
