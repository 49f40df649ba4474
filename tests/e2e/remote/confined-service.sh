#!/bin/sh
# The exposure of the server's unit as systemd rates it: 0 is none, 10 everything. It is held to 2.0.
# Usage: confined-service.sh UNIT_TEMPLATE
set -eu
command -v systemd-analyze > /dev/null || { echo "skipped: there is no systemd-analyze"; exit 77; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
sed 's|@TARVIK_SERVER_PROGRAM@|/bin/true|' "$1" > "$folder/tarvik-driver-server.service"
systemd-analyze security --offline=true --no-pager --threshold=20 "$folder/tarvik-driver-server.service" > "$folder/said" 2>&1 ||
  { grep -E '✗|Overall' "$folder/said"; exit 1; }
grep Overall "$folder/said"
