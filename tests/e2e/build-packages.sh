#!/usr/bin/env bash
# Makes the Debian packages of a build in a folder, and sees that nothing else is written.
# Usage: build-packages.sh BUILD_FOLDER PACKAGE_FOLDER
set -euo pipefail
build=$(realpath "$1")
packages=$2
rm -rf "$packages"
mkdir -p "$packages"
packages=$(realpath "$packages")

# What stands in the build folder, with size and time; the test runner writes its own reports there meanwhile.
contents() { find "$build" \( -path "$packages" -o -path "$build/Testing" \) -prune -o -type f -printf '%p %s %T@\n' | sort; }
contents > "$packages/before.txt"
cpack --config "$build/CPackConfig.cmake" -B "$packages" > "$packages/cpack.log" 2>&1 ||
  { cat "$packages/cpack.log" >&2; exit 1; }
contents | diff "$packages/before.txt" - ||
  { echo "cpack -B has changed the build folder" >&2; exit 1; }
rm -rf "$packages/_CPack_Packages" "$packages/before.txt"
ls "$packages"
