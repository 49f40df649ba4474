#!/usr/bin/env bash
# The day of somebody who has the packages and the documents and nothing else: installs the packages into a throw-away
# root, cuts hosts, clients and commands out of the documents, builds them with the installed files, and works them.
# Usage: outsiders-day.sh PACKAGE_FOLDER
set -euo pipefail
packages=$(realpath "$1")
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
# shellcheck source=tests/e2e/package-root.sh
. "$here/../package-root.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for tool in Xvfb xdotool; do
  command -v $tool > /dev/null || { echo "skipped: no $tool"; exit 77; }
done

say() { printf -- '-- %s\n' "$*"; }
fail() { echo "$*" >&2; exit 1; }
expect() { # FILE PATTERN
  grep -Eq "$2" "$1" || { echo "missing in what was shown: $2" >&2; cat "$1" >&2; exit 1; }
}
# The commands of a document, in its folder; where they name the machine's folders they mean the root's.
follow() { # FILE
  say "$1"
  sed -i "s|/usr/share/|$root/usr/share/|g" "$work/texts/$1"
  (cd "$(dirname "$work/texts/$1")" && bash -euo pipefail "$(basename "$1")") > "$work/follow.log" 2>&1 ||
    fail "$(cat "$work/follow.log")"
}

say "install"
make_root "$work/root"
dpkg_in_root -i "$packages"/*.deb
use_root "$work/home"
# What the distribution's linker, compiler and toolkit find by themselves in /usr they are told of here.
export PATH="$root/usr/bin:$PATH" PKG_CONFIG_PATH="$libraries/pkgconfig" CMAKE_PREFIX_PATH="$root/usr"
export LIBRARY_PATH="$libraries" LD_RUN_PATH="$libraries" CMAKE_GENERATOR=Ninja
export QT_PLUGIN_PATH="$libraries/qt6/plugins"

say "cut the documents"
documents="$root/usr/share/doc/tarvikvi"
mkdir "$work/texts"
python3 -B "$here/cut_documents.py" "$work/texts" "$documents"/*.md

follow bench/build-with-cmake.sh
mv "$work/texts/bench/build/bench" "$work/texts/bench-with-cmake"
follow bench/build-with-pkg-config.sh
mv "$work/texts/bench/bench" "$work/texts/bench-with-pkg-config"
follow loader/build.sh
follow session/build.sh
follow by-name/build.sh

say "a client by name"
"$work/texts/by-name/by-name" > "$work/by-name.txt" 2>&1 || fail "$(cat "$work/by-name.txt")"
expect "$work/by-name.txt" '^open: .'

say "a session without a window"
"$work/texts/session/build/console-session" > "$work/session.txt" 2>&1 || fail "$(cat "$work/session.txt")"
expect "$work/session.txt" '^frequency 100000 Hz, width 2\.5e-06 s$'

say "a server with certificates"
follow server/prepare.sh
# In the place of the usual port stands one that the system chooses.
cd "$work/texts/server"
sed -i 's/^tarvik-driver-server /exec &--port 0 /' serve.sh
bash serve.sh > server.out 2> server.log &
server=$!
for _ in $(seq 300); do
  ! grep -q 'listening on' server.out || break
  kill -0 $server 2> /dev/null || fail "$(cat server.log)"
  sleep 0.1
done
port=$(sed -n 's/^tarvik-driver-server: listening on .*:\([0-9]*\)$/\1/p' server.out)
sed -i "s|tarvik://localhost|&:$port|" ask.sh
PATH="$work/texts/session/build:$PATH" bash ask.sh > session.txt 2>&1 || fail "$(cat session.txt server.log)"
kill -TERM $server
wait $server || fail "$(cat server.log)"
expect session.txt '^frequency 100000 Hz, width 2\.5e-06 s$'
expect server.log ' bench at .*: opened '
cd "$here"

say "a driver of one's own, worked by the panel"
follow driver/build.sh
tarvikvi --tour "$work/tour" > "$work/driver.txt" 2> "$work/driver.err" || true
expect "$work/driver.txt" 'status: Online with Pulser 1 \(Pulser 1\)$'
expect "$work/driver.txt" 'width read back: 2\.500 us$'
rm "$HOME"/.local/share/tarvikvi/drivers/*

say "hosts in their windows"
python3 -B "$here/windows.py" "$work/texts" "$work/windows"
say "done"
