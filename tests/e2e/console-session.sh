#!/usr/bin/env bash
# Runs the console example as its users do: on instruments of this machine, with settings that the instrument refuses, and
# where neither a home folder nor a folder for temporary files is known.
# The panel goes on there, too.
# Usage: console-session.sh PROGRAM PANEL_PROGRAM
set -euo pipefail
console=$(realpath "$1") panel=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

say() { printf -- '-- %s\n' "$*"; }
fail() { echo "$1" >&2; cat "$work/out" "$work/err" >&2; exit 1; }
run() { # EXPECTED_STATUS PROGRAM VARIABLE=VALUE... -- ARGUMENT...
  local expected=$1 program=$2 status=0 variables=()
  shift 2
  while [ "$1" != -- ]; do variables+=("$1"); shift; done
  shift
  env -i "${variables[@]}" timeout 60 "$program" "$@" > "$work/out" 2> "$work/err" || status=$?
  [ "$status" = "$expected" ] || fail "ended with $status and not with $expected"
}
expect() { # FILE PATTERN
  grep -Eq "$2" "$work/$1" || fail "missing: $2"
}

home=(HOME="$work/home" XDG_DATA_DIRS="$work/none" LC_ALL=C.UTF-8)

say "settings that the instrument takes"
run 0 "$console" "${home[@]}" --
expect out '^Online with '
expect out '^frequency 100000 Hz, width 2\.5e-06 s$'

say "settings that the instrument refuses with the commit"
run 1 "$console" "${home[@]}" -- "" 20e-6
expect err '^TarvikVI: Instrument Errors\(s\):$'
expect out '^the instrument did not take the settings$'
expect out '^frequency 1e\+06 Hz, width 1e-07 s$'

say "settings that cannot be read"
mkdir -p "$work/bad/.config/TarvikVI/TarvikVI.conf"
run 1 "$console" HOME="$work/bad" XDG_DATA_DIRS="$work/none" --
expect err 'Cannot read the settings file .*/TarvikVI\.conf: it is a folder$'

say "a failure to report where no folder for the log is known"
mkdir -p "$work/share/tarvikvi/drivers" "$work/current/.local/share/tarvikvi/drivers"
echo absent.so > "$work/share/tarvikvi/drivers/KolvenAtl.Kolven.driver"
echo planted.so > "$work/current/.local/share/tarvikvi/drivers/KolvenAtl.Kolven.driver"
cd "$work/current"
run 1 "$console" TMPDIR=/nonexistent XDG_DATA_DIRS="$work/share" --
expect err '^TarvikVI: Cannot create KolvenAtl\.Kolven: .*/share/tarvikvi/drivers/absent\.so '
expect err '^console-session: Path not found$'
if grep -q planted "$work/err"; then fail "a driver was looked for in the current folder"; fi
run 1 "$panel" TMPDIR=/nonexistent XDG_DATA_DIRS="$work/share" -- --tour "$work/tour"
expect out 'box "TarvikVI": Cannot create KolvenAtl\.Kolven: '
expect out 'box "TarvikVI": Path not found'
expect out '^[0-9]+ steps, [0-9]+ went wrong$'
say "done"
