#!/usr/bin/env bash
# Installs a build into an empty prefix, builds the examples against it, runs them without a display, and checks what
# they show.
# Usage: install-and-build-examples.sh BUILD_FOLDER [FORM_LOADER]
set -euo pipefail
build=$(realpath "$1")
loader=${2:+$(realpath "$2")}
source=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
# shellcheck source=tests/e2e/server-session.sh
. "$source/tests/e2e/server-session.sh"

say() { printf -- '-- %s\n' "$*"; }
expect() { # FILE PATTERN
  grep -Eq "$2" "$1" || { echo "missing in what was shown: $2" >&2; cat "$1" >&2; exit 1; }
}

say "install into an empty prefix"
cmake --install "$build" --prefix "$prefix" > "$work/install.log"
for file in bin/tarvikvi share/applications/tarvikvi.desktop share/man/man1/tarvikvi.1 \
  share/metainfo/tarvikvi.metainfo.xml share/icons/hicolor/scalable/apps/tarvikvi.svg; do
  [ -s "$prefix/$file" ] || { echo "not installed: $file" >&2; exit 1; }
done
bare=$(find "$prefix"/lib* -name '*.driver')
[ -z "$bare" ] || { echo "manifests among the libraries: $bare" >&2; exit 1; }
if grep -rlF "$build" "$prefix" --include='*.cmake' --include='*.pc' --include='*.driver' --include='*.h'; then
  echo "installed files name the build folder" >&2
  exit 1
fi

if command -v appstreamcli > /dev/null; then
  appstreamcli validate --no-net "$prefix/share/metainfo/tarvikvi.metainfo.xml" > "$work/metainfo.txt" ||
    { cat "$work/metainfo.txt" >&2; exit 1; }
fi
server=
if [ -f "$build/lib/tarvik.remote.driver" ]; then
  server=bin/tarvik-driver-server
  for file in $server bin/tarvik-make-test-certificates share/man/man8/tarvik-driver-server.8 \
    share/man/man8/tarvik-make-test-certificates.8 share/tarvikvi/drivers/tarvik.remote.driver; do
    [ -s "$prefix/$file" ] || { echo "not installed: $file" >&2; exit 1; }
  done
  grep -qF "ExecStart=$prefix/$server " "$prefix/lib/systemd/system/tarvik-driver-server.service" ||
    { echo "the service does not start the installed program" >&2; exit 1; }
fi

# The installed tree has to stand alone, wherever it is.
mv "$prefix" "$work/elsewhere"
prefix="$work/elsewhere"
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/config" XDG_STATE_HOME="$work/home/state"
export XDG_DATA_HOME="$work/home/data" XDG_RUNTIME_DIR="$work/run" QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
libraries=$(dirname "$(find "$prefix" -name 'libtarvikvi.so' | head -1)")
export PKG_CONFIG_PATH="$libraries/pkgconfig"
cp -r "$source/examples" "$work/examples"

say "build and run the examples"
for example in panel-host console-session; do
  cmake -S "$work/examples/$example" -B "$work/$example" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
    > "$work/$example.log" || { cat "$work/$example.log"; exit 1; }
  cmake --build "$work/$example" >> "$work/$example.log" || { cat "$work/$example.log"; exit 1; }
done
timeout 60 "$work/panel-host/panel-host" "$work/panel.png" > "$work/panel.txt" 2> "$work/panel.err"
expect "$work/panel.txt" '^status: (Local Connection|Offline)$'
expect "$work/panel.txt" '^instruments: [1-9]'
[ "$(stat -c %s "$work/panel.png")" -gt 5000 ] || { echo "the picture of the panel is empty" >&2; exit 1; }
timeout 60 "$work/console-session/console-session" > "$work/console.txt" 2> "$work/console.err"
expect "$work/console.txt" '^Local Connection$'
expect "$work/console.txt" '^Online with '
expect "$work/console.txt" '^frequency 100000 Hz, width 2\.5e-06 s$'
[ "$(tail -1 "$work/console.txt")" = Offline ]

say "the public vocabulary"
# shellcheck disable=SC2046
"${CXX:-c++}" -fsyntax-only -x c++ $(pkg-config --cflags tarvikautomation) - << 'EOF'
#include "instrument/Vocabulary.h"
static_assert(tarvik::LevelFormatEnum::eFormatECL == 3 && tarvik::PeriodPrecedence::ePreDelay == 3);
static_assert(tarvik::eLacksAnyVxi == 7168);
EOF

say "every installed header alone, with what is installed"
grep -rL '^#pragma once' "$prefix/include/tarvikvi" > "$work/unguarded.txt" || true
[ ! -s "$work/unguarded.txt" ] || { cat "$work/unguarded.txt" >&2; exit 1; }
# shellcheck disable=SC2046
(cd "$prefix/include/tarvikvi" && find . -name '*.h' -printf '%P\n' | sort) | xargs -P "$(nproc)" -I HEADER \
  "${CXX:-c++}" -fsyntax-only -x c++ -include HEADER $(pkg-config --cflags tarvikvi) /dev/null ||
  { echo "an installed header needs one that is not installed" >&2; exit 1; }

if [ -n "$server" ]; then
  say "a session over the installed server"
  session_over_server "$prefix/$server" "$work/console-session/console-session" "$work"
  expect "$work/client.out" '^Online with '
  expect "$work/client.out" '^frequency 100000 Hz, width 2\.5e-06 s$'
fi

if [ -n "$loader" ]; then
  say "load a form with the installed plug-in of the form designer"
  plugins=$(dirname "$(find "$prefix" -name libtarvikdesigner.so)")
  "$loader" "$plugins" "$source/tests/gui/designer/SavedForm.ui" > "$work/form.txt" 2> "$work/form.err"
  expect "$work/form.txt" '^tarvik::EngrSpin esWidth 250\.0$'
  expect "$work/form.txt" '^tarvik::CboEnhanced cboFull Source$'
  expect "$work/form.txt" "^library $(realpath "$libraries")/libtarvikvi"
fi

say "run the installed program"
timeout 120 "$prefix/bin/tarvikvi" --tour "$work/tour" > "$work/tour.txt" 2>/dev/null
expect "$work/tour.txt" ' steps, 0 went wrong$'
say "done"
