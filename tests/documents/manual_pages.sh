#!/usr/bin/env bash
# The manual pages format without a complaint. The program and each of its commands have one, which
# documents every option of the help and no other.
set -euo pipefail

status=0
complain() {
  echo "$*"
  status=1
}

for page in "$BUILD"/man/*.[13]; do
  complaints=$(groff -man -Tutf8 -ww -z "$page" 2>&1)$(mandoc -T lint "$page" 2>&1) || true
  [ -z "$complaints" ] || complain "$complaints"
  grep -q "^\.TH [A-Za-z\\-]* [13] \"20[0-9-]*\" \"[A-Za-z]* $VERSION\"" "$page" || complain "$page: another version"
done

# options_of_help COMMAND..., options_of_page FILE
options_of_help() {
  "$BUILD/application/raidmonitor" "$@" --help | grep -oE '^  --[a-z-]+' | tr -d ' ' | sort
}
options_of_page() {
  sed 's/\\-/-/g' "$1" | grep -A1 '^\.TP' | grep -oE '^\.BI? --[a-z-]+' | cut -d' ' -f2 | sort
}
compare() {
  local difference
  difference=$(diff <(options_of_help "${@:2}") <(options_of_page "$1")) || complain "$1: $difference"
}

overview=$BUILD/man/raidmonitor.1
compare "$overview"
commands=$("$BUILD/application/raidmonitor" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[ "$(wc -w <<<"$commands")" -ge 8 ] || complain "the help's commands were not understood: $commands"
for command in $commands; do
  compare "$BUILD/man/raidmonitor-$command.1" "$command"
  sed 's/\\-/-/g' "$overview" | grep -q "raidmonitor-$command (1)" || complain "raidmonitor.1 leads not to $command"
done
pages=$(ls "$BUILD"/man/raidmonitor-*.1 | wc -l)
[ "$pages" = "$(wc -w <<<"$commands")" ] || complain "there are $pages pages of commands"
exit $status
