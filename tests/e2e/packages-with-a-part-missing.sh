#!/usr/bin/env bash
# Configures without the toolkit's form designer and expects that no packages come of it, and which one is named; with
# the part switched off on purpose there is nothing to refuse.
# Usage: packages-with-a-part-missing.sh
set -euo pipefail
source=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

configure() { # OPTION...
  cmake -S "$source" -B "$work/build" -G Ninja -DTARVIK_TESTS=OFF "$@" > "$work/configure.log" 2>&1 ||
    { cat "$work/configure.log" >&2; exit 1; }
}
pack() { cpack --config "$work/build/CPackConfig.cmake" -B "$work/packages" > "$work/cpack.log" 2>&1; }
expect() { # FILE TEXT
  tr '\n' ' ' < "$1" | tr -s ' ' | grep -qF "$2" || { echo "missing: $2" >&2; cat "$1" >&2; exit 1; }
}

configure -DCMAKE_DISABLE_FIND_PACKAGE_Qt6Designer=ON
expect "$work/configure.log" "designer is left out: it needs the toolkit's form designer (qt6-tools-dev, libqt6opengl6-dev)"
! pack || { echo "packages were made without the designer's" >&2; exit 1; }
expect "$work/cpack.log" "designer needs the toolkit's form designer (qt6-tools-dev, libqt6opengl6-dev)"
[ -z "$(find "$work/packages" -name '*.deb' 2> /dev/null)" ] || { echo "some packages were made" >&2; exit 1; }

# Nothing is built here, so the packages fail all the same, but at the files and not at the parts.
configure -DTARVIK_DESIGNER=OFF
! pack || { echo "packages were made of nothing" >&2; exit 1; }
! grep -q 'left out' "$work/cpack.log" || { cat "$work/cpack.log" >&2; exit 1; }
expect "$work/cpack.log" "libtarvikautomation.so"
