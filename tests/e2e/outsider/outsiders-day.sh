#!/usr/bin/env bash
# The day of somebody who has the packages and the documents and nothing else: installs the packages into a throw-away
# root, cuts hosts, clients, a driver and commands out of the documents, builds them with the installed files, and works
# them.
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

# Works in a root: what the distribution's linker, compiler and toolkit find by themselves in /usr they are told of.
enter_root() {
  use_root "$work/home"
  export PATH="$root/usr/bin:$path" PKG_CONFIG_PATH="$libraries/pkgconfig" CMAKE_PREFIX_PATH="$root/usr"
  export LIBRARY_PATH="$libraries" LD_RUN_PATH="$libraries" QT_PLUGIN_PATH="$libraries/qt6/plugins"
  documents="$root/usr/share/doc/tarvikvi"
}
path="$PATH"
export CMAKE_GENERATOR=Ninja

say "install"
make_root "$work/root"
dpkg_in_root -i "$packages"/*.deb
enter_root
everything="$root"

say "cut the documents"
mkdir "$work/texts"
python3 -B "$here/cut_documents.py" "$work/texts" "$documents"/*.md

say "a driver, with what its author needs and no more"
make_root "$work/driver-root"
dpkg_in_root -i "$packages"/libtarvikautomation*.deb
enter_root
follow driver/build.sh
! grep -i qt "$work/texts/driver/build/CMakeCache.txt" || fail "a driver looks for the toolkit"
follow driver/build-with-pkg-config.sh
# The words of pkg-config are arguments, each for itself.
# shellcheck disable=SC2046
(cd "$root/usr/include/tarvikvi" && find . -name '*.h' -printf '%P\n') | xargs -P "$(nproc)" -I HEADER \
  c++ -fsyntax-only -x c++ -include HEADER $(pkg-config --cflags tarvikautomation) /dev/null ||
  fail "a header for drivers needs one that its package does not have"
root="$everything"
enter_root

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

say "the driver in place of the system's"
follow driver/install.sh
for library in build/libexample-driver.so libexample-driver.so; do
  cp "$work/texts/driver/$library" "$HOME/.local/share/tarvikvi/drivers"
  "$work/texts/session/build/console-session" "" > "$work/session.txt" 2>&1 || fail "$(cat "$work/session.txt")"
  expect "$work/session.txt" '^Online with Pulser 1 \(Pulser 1\)$'
  expect "$work/session.txt" '^frequency 100000 Hz, width 2\.5e-06 s$'
done

# The tour also sends a pattern, which the driver refuses and the log tells; the log is not that of the session below.
XDG_STATE_HOME="$work/tour-log" tarvikvi --tour "$work/tour" > "$work/tour.txt" 2> "$work/tour.err" || true
expect "$work/tour.txt" 'status: Online with Pulser 1 \(Pulser 1\)$'
expect "$work/tour.txt" 'width read back: 2\.500 us$'

say "hosts and panel in their windows"
python3 -B "$here/windows.py" "$work/texts" "$work/windows" "$root/usr/bin/tarvikvi"
say "done"
