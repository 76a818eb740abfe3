# Sourced by run, test and .ci/run: installs missing packages and configures build folders.
#
#   install_packages build test    installs what is missing of these groups of packages.txt
#   build_preset dev [TARGET…]     configures build/dev by its preset and builds it

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# packages_of GROUP…: the names listed under these groups, one a line.
packages_of() {
  local group
  for group in "$@"; do
    sed -n "/^\[$group\]/,/^\[/p" "$root/packages.txt" | grep -v -e '^\[' -e '^#' -e '^$'
  done
}

is_installed() {
  dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null | grep -qx installed
}

install_packages() {
  command -v apt-get >/dev/null || return 0  # not Debian: the packages are the user's own affair
  local package missing=() sudo=()
  for package in $(packages_of "$@"); do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  [ "$(id -u)" -eq 0 ] || sudo=(sudo)
  echo "Installing: ${missing[*]}" >&2
  "${sudo[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

build_preset() {
  local preset=$1 launcher=()
  shift
  command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  (cd "$root" && cmake --preset "$preset" "${launcher[@]}" >/dev/null) || return
  # The last line only on a terminal; a failure is printed whole.
  cmake --build "$root/build/$preset" ${1:+--target "$@"} >&2
}
