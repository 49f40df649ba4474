# Sourced: a throw-away root into which packages are installed for real, and what has to be set to work in it.
# Usage: make_root FOLDER; then dpkg_in_root OPTIONS..., and use_root HOME_FOLDER for what runs from the root.

# An empty root of its own: the machine's packages are not touched.
make_root() {
  root="$1"
  mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/triggers"
  : > "$root/var/lib/dpkg/status"
  : > "$root/var/lib/dpkg/available"
}

dpkg_in_root() {
  local as_root=()
  [ "$(id -u)" = 0 ] || as_root=(fakeroot)
  "${as_root[@]}" dpkg --root="$root" --log="$root/var/log-of-dpkg" --force-not-root --force-script-chrootless \
    --force-depends --force-bad-path "$@" > "$root/var/output-of-dpkg" 2>&1 ||
    { cat "$root/var/output-of-dpkg" >&2; exit 1; }
}

# The folder of libraries, and an environment in which the root's files stand where the distribution's do.
use_root() { # HOME_FOLDER
  libraries="$root$(dirname "$(dpkg -L libqt6widgets6 | grep -m 1 '/libQt6Widgets\.so\.6$')")"
  unset XDG_CONFIG_HOME XDG_STATE_HOME XDG_DATA_HOME
  export HOME="$1" XDG_RUNTIME_DIR="$1/run" XDG_DATA_DIRS="$root/usr/share"
  export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
  mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
  chmod 700 "$XDG_RUNTIME_DIR"
}
