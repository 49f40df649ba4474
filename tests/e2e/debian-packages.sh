#!/usr/bin/env bash
# Builds the Debian packages, installs them into a throw-away root, runs the program from there, removes them, and
# looks for what they left.
# Usage: debian-packages.sh BUILD_FOLDER [FORM_LOADER]
set -euo pipefail
build=$(realpath "$1")
loader=${2:+$(realpath "$2")}
source=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
# shellcheck source=tests/e2e/server-session.sh
. "$source/tests/e2e/server-session.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

say() { printf -- '-- %s\n' "$*"; }
for tool in dpkg dpkg-deb cpack fakeroot; do
  command -v "$tool" > /dev/null || [ "$tool" = fakeroot ] || { say "skipped: no $tool"; exit 0; }
done

say "build the packages"
cpack --config "$build/CPackConfig.cmake" -B "$work/packages" > "$work/cpack.log" 2>&1 || { cat "$work/cpack.log"; exit 1; }
packages=("$work"/packages/*.deb)
names=(libtarvikautomation tarvikvi libtarvikvi-dev tarvikvi-simulator)
[ ! -f "$build/lib/designer/libtarvikdesigner.so" ] || names+=(tarvikvi-designer)
[ ! -f "$build/lib/tarvik.remote.driver" ] || names+=(tarvikvi-remote tarvikvi-server)
has() { [[ " ${names[*]} " == *" $1 "* ]]; }
for name in "${names[@]}"; do
  [ -f "$(echo "$work"/packages/"${name}"_*.deb)" ] || { echo "no package $name" >&2; exit 1; }
done
[ "${#packages[@]}" = "${#names[@]}" ] || { echo "other packages than expected: ${packages[*]}" >&2; exit 1; }

depends_on() { # PACKAGE WHAT
  dpkg-deb -f "$work"/packages/"$1"_*.deb Depends | grep -q "\b$2\b" ||
    { echo "the package $1 does not depend on $2" >&2; exit 1; }
}
depends_on tarvikvi libqt6widgets6
# A machine that has the instruments and no screen gets no toolkit.
for name in libtarvikautomation tarvikvi-simulator tarvikvi-server tarvikvi-remote; do
  has "$name" || continue
  [ "$name" = libtarvikautomation ] || depends_on "$name" libtarvikautomation
  ! dpkg-deb -f "$work"/packages/"$name"_*.deb Depends | grep -E 'qt6|tarvikvi( |,|$)' ||
    { echo "the package $name needs the panel or its toolkit" >&2; exit 1; }
done
! has tarvikvi-designer || depends_on tarvikvi-designer libqt6designer6
! has tarvikvi-server || depends_on tarvikvi-server 'libgrpc++1.51'
! has tarvikvi-remote || depends_on tarvikvi-remote 'libgrpc++1.51'

if command -v apt-get > /dev/null; then
  say "what apt-get would do"
  # All that they need comes from the machine's distribution.
  apt-get -o Debug::NoLocking=1 --simulate install "${packages[@]}" > "$work/apt.txt" 2>&1 ||
    { cat "$work/apt.txt" >&2; exit 1; }
  for name in "${names[@]}"; do
    grep -q "^Inst $name " "$work/apt.txt" || { cat "$work/apt.txt" >&2; exit 1; }
  done
fi

# An empty root of its own: the machine's packages are not touched.
root="$work/root"
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/triggers"
: > "$root/var/lib/dpkg/status"
: > "$root/var/lib/dpkg/available"
as_root=()
[ "$(id -u)" = 0 ] || as_root=(fakeroot)
dpkg_in_root() {
  "${as_root[@]}" dpkg --root="$root" --log="$work/dpkg.log" --force-not-root --force-script-chrootless \
    --force-depends --force-bad-path "$@" > "$work/dpkg.out" 2>&1 || { cat "$work/dpkg.out" >&2; exit 1; }
}

say "install"
dpkg_in_root -i "${packages[@]}"
[ "$(dpkg --root="$root" -l 'tarvikvi*' 'libtarvik*' | grep -c '^ii')" = "${#names[@]}" ]

say "run"
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/config" XDG_STATE_HOME="$work/home/state"
export XDG_DATA_HOME="$work/home/data" XDG_RUNTIME_DIR="$work/run" QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
XDG_DATA_DIRS="$root/usr/share" timeout 120 "$root/usr/bin/tarvikvi" --tour "$work/tour" > "$work/tour.txt"
grep -q ' steps, 0 went wrong$' "$work/tour.txt" || { cat "$work/tour.txt" >&2; exit 1; }

libraries=$(dirname "$(find "$root/usr" -name 'libtarvikvi.so')")
if has tarvikvi-server; then
  say "a program built with the development files, and a session over the server"
  # The words of pkg-config are arguments, each for itself.
  # shellcheck disable=SC2046
  PKG_CONFIG_PATH="$libraries/pkgconfig" "${CXX:-c++}" -std=c++20 -fPIC "$source/examples/console-session/main.cpp" \
    $(PKG_CONFIG_PATH="$libraries/pkgconfig" pkg-config --cflags --libs tarvikvi) -Wl,-rpath,"$libraries" \
    -o "$work/console-session"
  session_over_server "$root/usr/bin/tarvik-driver-server" "$work/console-session" "$work"
  grep -q '^frequency 100000 Hz, width 2\.5e-06 s$' "$work/client.out" || { cat "$work/client.out" >&2; exit 1; }
  grep -q '^ExecStart=/usr/bin/tarvik-driver-server ' "$root/usr/lib/systemd/system/tarvik-driver-server.service"
fi
if has tarvikvi-designer && [ -n "$loader" ]; then
  say "load a form with the plug-in of the form designer"
  "$loader" "$libraries/qt6/plugins/designer" "$source/tests/gui/designer/SavedForm.ui" > "$work/form.txt"
  grep -q '^tarvik::EngrSpin esWidth 250\.0$' "$work/form.txt" || { cat "$work/form.txt" >&2; exit 1; }
  grep -qF "library $libraries/libtarvikvi" "$work/form.txt" || { cat "$work/form.txt" >&2; exit 1; }
fi

say "remove"
mapfile -t installed < <(dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${Package}\n')
dpkg_in_root -P "${installed[@]}"
left=$(find "$root" -not -path "$root/var*" -not -path "$root" -not -type d)
[ -z "$left" ] || { printf 'left behind:\n%s\n' "$left" >&2; exit 1; }
[ ! -e "$root/usr" ] || { echo "left behind: folders" >&2; find "$root/usr" >&2; exit 1; }
say "done"
