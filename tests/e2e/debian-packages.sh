#!/usr/bin/env bash
# Looks at the Debian packages, installs them into a throw-away root, runs the program from there, removes them, and
# looks for what they left.
# Usage: debian-packages.sh PACKAGE_FOLDER FORM_LOADER
set -euo pipefail
folder=$(realpath "$1")
loader=$(realpath "$2")
source=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../..")
# shellcheck source=tests/e2e/package-root.sh
. "$source/tests/e2e/package-root.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

say() { printf -- '-- %s\n' "$*"; }
fail() { echo "$*" >&2; exit 1; }

say "the set of packages"
packages=("$folder"/*.deb)
names=(libtarvikautomation1 libtarvikautomation-dev libtarvikvi1 tarvikvi tarvikctl python3-tarvikvi libtarvikvi-dev
  tarvikvi-simulator tarvikvi-scpi tarvikvi-designer tarvikvi-remote tarvikvi-server)
package() { echo "$folder/$1"_*.deb; }
for name in "${names[@]}"; do
  [ -f "$(package "$name")" ] || fail "no package $name"
done
[ "${#packages[@]}" = "${#names[@]}" ] || fail "other packages than expected: ${packages[*]}"

depends() { dpkg-deb -f "$(package "$1")" Depends; } # PACKAGE
depends_on() { depends "$1" | grep -q "\b$2\b" || fail "the package $1 does not depend on $2"; } # PACKAGE WHAT
depends_on libtarvikvi1 libqt6widgets6
depends_on tarvikvi libtarvikvi1
depends_on libtarvikvi-dev libtarvikautomation-dev
depends_on tarvikvi-designer libqt6designer6
depends_on tarvikvi-server 'libgrpc++1.51'
depends_on tarvikvi-remote 'libgrpc++1.51'
depends_on tarvikvi-scpi 'liblxi1'
# A machine that has the instruments and no screen gets no toolkit, and who writes a driver needs none.
for name in libtarvikautomation1 libtarvikautomation-dev tarvikctl python3-tarvikvi tarvikvi-simulator tarvikvi-scpi \
  tarvikvi-server tarvikvi-remote; do
  [ "$name" = libtarvikautomation1 ] || depends_on "$name" libtarvikautomation1
  ! depends "$name" | grep -E 'qt6|tarvikvi' || fail "the package $name needs the panel or its toolkit"
done

say "what the distribution says of them"
options=(--fail-on error)
[ "$(id -u)" != 0 ] || options+=(--allow-root)
lintian "${options[@]}" "${packages[@]}" > "$work/lintian.txt" 2>&1 || fail "$(cat "$work/lintian.txt")"

if command -v apt-get > /dev/null; then
  say "what apt-get would do"
  # All that they need comes from the machine's distribution.
  apt-get -o Debug::NoLocking=1 --simulate install "${packages[@]}" > "$work/apt.txt" 2>&1 ||
    fail "$(cat "$work/apt.txt")"
  for name in "${names[@]}"; do
    grep -q "^Inst $name " "$work/apt.txt" || fail "$(cat "$work/apt.txt")"
  done
fi

say "install"
make_root "$work/root"
dpkg_in_root -i "${packages[@]}"
[ "$(dpkg --root="$root" -l 'tarvik*' 'libtarvik*' 'python3-tarvik*' | grep -c '^ii')" = "${#names[@]}" ]
use_root "$work/home"

say "where the files stand"
for name in "${names[@]}"; do
  for file in copyright changelog.gz changelog.Debian.gz; do
    [ -s "$root/usr/share/doc/$name/$file" ] || fail "no $file in $name"
  done
done
for file in user-guide.md pictures/1-instr.png embedding.md driver-authors-guide.md remote.md scpi.md simulator.md setups.md \
  setup.schema.json \
  examples/panel-host/Bench.ui examples/console-session/main.cpp examples/driver/Library.cpp; do
  [ -s "$root/usr/share/doc/tarvikvi/$file" ] || fail "no $file among the documents"
done
gzip -dc "$root/usr/share/man/man1/tarvikvi.1.gz" | grep -q '^\.TH TARVIKVI 1 ' || fail "no manual"
gzip -dc "$root/usr/share/man/man1/tarvikctl.1.gz" | grep -q '^\.TH TARVIKCTL 1 ' || fail "no manual of tarvikctl"
gzip -dc "$root/usr/share/man/man1/tarvik-scpi-simulator.1.gz" | grep -q '^\.TH TARVIK-SCPI-SIMULATOR 1 ' ||
  fail "no manual of tarvik-scpi-simulator"
[ -s "$root/usr/share/bash-completion/completions/tarvikctl" ] || fail "no completion for the shell"
grep -q '^ExecStart=/usr/bin/tarvik-driver-server ' "$root/usr/lib/systemd/system/tarvik-driver-server.service" ||
  fail "the service does not start the installed program"
# Beside the libraries stand only libraries; what is loaded by name has a folder of its own, and the toolkit's folder of
# plug-ins is that of its other plug-ins.
bare=$(find "$libraries" -maxdepth 1 -not -type d -not -name 'libtarvikautomation.so*' -not -name 'libtarvikvi.so*')
[ -z "$bare" ] || fail "in the folder of libraries: $bare"
[ "$(ls "$libraries/tarvikvi")" = $'libtarvikremote.so\nlibtarvikscpi.so\nlibtarviksimulator.so' ] || fail "$(ls "$libraries/tarvikvi")"
plugins=$(dirname "$(dirname "$(dpkg -L libqt6gui6 | grep -m 1 '/libqoffscreen\.so$')")")
[ -f "$root$plugins/designer/libtarvikdesigner.so" ] || fail "the designer's plug-in is not in $plugins/designer"

for name in KolvenAtl.Kolven KolvenAtl.Kolven/scpi TarvikVI.clsInstrInterface tarvik.remote; do
  manifest="$root/usr/share/tarvikvi/drivers/$name.driver"
  [ -f "$(dirname "$manifest")/$(cat "$manifest")" ] || fail "$manifest names no library: $(cat "$manifest")"
done

say "run"
timeout 120 "$root/usr/bin/tarvikvi" --tour "$work/tour" > "$work/tour.txt"
grep -q ' steps, 0 went wrong$' "$work/tour.txt" || fail "$(cat "$work/tour.txt")"

[ "$("$root/usr/bin/tarvikctl" get VP-210 timing.width[1])" = 'timing.width[1]=100ns' ] || fail "tarvikctl does not run"
"$root/usr/bin/tarvik-scpi" profiles | grep -q '^scpi-99-pattern	' || fail "tarvik-scpi does not find its profiles"
"$root/usr/bin/tarvik-scpi-simulator" --list | grep -q '^VP-210	' || fail "tarvik-scpi-simulator does not run"

[ "$(PYTHONPATH="$root/usr/lib/python3/dist-packages" /usr/bin/python3 -B -c \
  'import tarvikvi; print(tarvikvi.open("VP-210").timing.width[1], tarvikvi.__file__)')" = \
  "1e-07 $root/usr/lib/python3/dist-packages/tarvikvi/__init__.py" ] || fail "the Python module does not run"

say "load a form with the plug-in of the form designer"
"$loader" "$root$plugins/designer" "$source/tests/gui/designer/SavedForm.ui" > "$work/form.txt"
grep -q '^tarvik::EngrSpin esWidth 250\.0$' "$work/form.txt" || fail "$(cat "$work/form.txt")"
grep -qF "library $libraries/libtarvikvi" "$work/form.txt" || fail "$(cat "$work/form.txt")"

say "remove"
mapfile -t installed < <(dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${Package}\n')
dpkg_in_root -P "${installed[@]}"
left=$(find "$root" -not -path "$root/var*" -not -path "$root" -not -type d)
[ -z "$left" ] || fail "left behind: $left"
[ ! -e "$root/usr" ] || fail "left behind: $(find "$root/usr")"
say "done"
