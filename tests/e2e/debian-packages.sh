#!/usr/bin/env bash
# Builds the Debian packages, installs them into a throw-away root, runs the program from there, removes them, and
# looks for what they left.
# Usage: debian-packages.sh BUILD_FOLDER
set -euo pipefail
build=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

say() { printf -- '-- %s\n' "$*"; }
for tool in dpkg dpkg-deb cpack fakeroot; do
  command -v "$tool" > /dev/null || [ "$tool" = fakeroot ] || { say "skipped: no $tool"; exit 0; }
done

say "build the packages"
cpack --config "$build/CPackConfig.cmake" -B "$work/packages" > "$work/cpack.log" 2>&1 || { cat "$work/cpack.log"; exit 1; }
packages=("$work"/packages/*.deb)
for name in tarvikvi libtarvikvi-dev tarvikvi-simulator; do
  ls "$work"/packages/"${name}"_*.deb > /dev/null
done
dpkg-deb -f "$work"/packages/tarvikvi_*.deb Depends | grep -q libqt6widgets6 ||
  { echo "the program's package does not depend on the toolkit" >&2; exit 1; }

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
[ "$(dpkg --root="$root" -l 'tarvikvi*' libtarvikvi-dev | grep -c '^ii')" -ge 3 ]

say "run"
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/config" XDG_STATE_HOME="$work/home/state"
export XDG_DATA_HOME="$work/home/data" XDG_RUNTIME_DIR="$work/run" QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
XDG_DATA_DIRS="$root/usr/share" timeout 120 "$root/usr/bin/tarvikvi" --tour "$work/tour" > "$work/tour.txt"
grep -q ' steps, 0 went wrong$' "$work/tour.txt" || { cat "$work/tour.txt" >&2; exit 1; }

say "remove"
mapfile -t names < <(dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${Package}\n')
dpkg_in_root -P "${names[@]}"
left=$(find "$root" -not -path "$root/var*" -not -path "$root" -not -type d)
[ -z "$left" ] || { printf 'left behind:\n%s\n' "$left" >&2; exit 1; }
[ ! -e "$root/usr" ] || { echo "left behind: folders" >&2; find "$root/usr" >&2; exit 1; }
say "done"
