# Sourced by ./run, ./test and ./bench: installs what is missing, configures and builds.
# Usage: tarvik_setup PRESET [TARGET...]

tarvik_install_packages() { # [LIST]
  local list=${1:-packages.txt} missing=() package
  while read -r package; do
    [ -n "$package" ] || continue
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done < "$list"
  [ ${#missing[@]} -gt 0 ] || return 0

  echo "Installing: ${missing[*]}"
  local install=(apt-get install -y --no-install-recommends "${missing[@]}")
  if [ "$(id -u)" = 0 ]; then
    apt-get update -q && DEBIAN_FRONTEND=noninteractive "${install[@]}"
  elif command -v sudo >/dev/null; then
    sudo apt-get update -q && sudo DEBIAN_FRONTEND=noninteractive "${install[@]}"
  else
    echo "Packages are missing and there is no way to install them from here. As root, run:" >&2
    echo "  apt-get update && ${install[*]}" >&2
    return 1
  fi
}

tarvik_setup() {
  local preset=$1
  shift
  tarvik_install_packages || return 1
  local folder=build
  [ "$preset" = default ] || folder="build-$preset"
  cmake --preset "$preset" "${TARVIK_CONFIGURE[@]}" || return 1
  if [ $# -gt 0 ]; then
    cmake --build "$folder" --target "$@"
  else
    cmake --build "$folder"
  fi
}
