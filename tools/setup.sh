# Sourced by run, test and .ci/run: installs missing packages and makes builds. What they print is kept in build/ and
# shown only when they fail.
#
#   install_packages build test      installs what is missing of these groups of packages.txt
#   build_preset dev [TARGET…]       configures build/dev by its preset and builds these targets, or all
#
# TESSALY_REAL_FILES in the environment names the folder of cameras' own DNG files for the tests that read them; without
# it a build keeps the folder that it was configured with.

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

# quietly LOG COMMAND…: runs a command; its output goes to LOG, and to standard error when it fails.
quietly() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  "$@" >"$log" 2>&1 && return
  grep -v '^\[[0-9]*/[0-9]*\] [A-Z][a-z]*ing ' "$log" >&2
  return 1
}

apt_install() {
  local sudo=()
  [ "$(id -u)" -eq 0 ] || sudo=(sudo)
  "${sudo[@]}" apt-get update -q &&
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "$@"
}

install_packages() {
  command -v apt-get >/dev/null || return 0  # not Debian: the packages are the user's own affair
  local package missing=()
  for package in $(packages_of "$@"); do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing ${missing[*]}…" >&2
  quietly "$root/build/packages.log" apt_install "${missing[@]}"
}

configure_and_build() {
  local preset=$1 options=()
  shift
  command -v ccache >/dev/null && options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  [ -z "${TESSALY_REAL_FILES:-}" ] || options+=("-DTESSALY_REAL_FILES=$TESSALY_REAL_FILES")
  cd "$root" && cmake --preset "$preset" "${options[@]}" && cmake --build --preset "$preset" ${1:+--target "$@"}
}

build_preset() {
  echo "Building Tessaly…" >&2
  (quietly "$root/build/$1.log" configure_and_build "$@")
}
