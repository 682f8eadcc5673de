#!/usr/bin/env bash
# The manual pages format without a complaint, and name every option and command of the program.
set -euo pipefail

status=0
for page in raidmonitor.1 RAIDMonitoring.3; do
  complaints=$(groff -man -Tutf8 -ww -z "$BUILD/man/$page" 2>&1)
  [ -z "$complaints" ] || { echo "$page: $complaints"; status=1; }
done

text=$(sed 's/\\-/-/g' "$BUILD/man/raidmonitor.1")
for command in watch list slots report record check metrics; do
  options=$("$BUILD/application/raidmonitor" $command --help | grep -oE -- '--[a-z-]+' | sort -u)
  for word in $command $options; do
    grep -qF -- "$word" <<<"$text" || { echo "raidmonitor.1 says nothing of $word"; status=1; }
  done
done
exit $status
