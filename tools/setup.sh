# Sourced by run, test and .ci/run: installs missing packages and makes builds. What they print is kept in build/ and
# shown only when they fail; of a build one sees how far it is.
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
  show_failure "$log"
}

# show_failure LOG: what a failed command has printed, without the steps of a build that went well.
show_failure() {
  grep -v '^\[[0-9]*/[0-9]*\] [A-Z][a-z]*ing ' "$1" >&2
  return 1
}

# show_progress LOG: keeps what a build prints in LOG and tells how many of its targets are done: on a terminal in
# place, elsewhere a line after each tenth.
show_progress() {
  local line done all tenths=0 begin='' end=$'\n'
  [ ! -t 2 ] || { begin=$'\r\e[K' end=''; }
  while IFS= read -r line; do
    printf '%s\n' "$line" >&3
    [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\  ]] || continue
    done=${BASH_REMATCH[1]} all=${BASH_REMATCH[2]}
    [ -z "$end" ] || [ $((done * 10 / all)) -gt "$tenths" ] || continue
    tenths=$((done * 10 / all))
    printf '%s  %d of %d%s' "$begin" "$done" "$all" "$end" >&2
  done 3>"$1"
  printf '%s' "$begin" >&2
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

# first_build PRESET: how long the first build of a preset takes, where that is known in processor seconds.
first_build() {
  local -A seconds=([release]=250)
  [ -n "${seconds[$1]:-}" ] && [ ! -e "$root/build/$1/.ninja_log" ] || return 0
  local minutes=$(((seconds[$1] / $(nproc) + 59) / 60))
  echo " The first time takes about $minutes min on $(nproc) processors."
}

build_preset() {
  local log=$root/build/$1.log
  echo "Building Tessaly…$(first_build "$1")" >&2
  mkdir -p "$root/build"
  (set -o pipefail && configure_and_build "$@" 2>&1 | show_progress "$log") || show_failure "$log"
}
