#!/usr/bin/env bash
# check-reproducible.sh: builds the packages of the last commit twice, in two folders of different names, and compares
# them byte by byte.
set -euo pipefail
cd "$(dirname "$0")/.."
source tools/setup.sh

install_packages build window packaging
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH

# build_packages FOLDER: as a distribution would, without what an earlier build has left in a cache.
build_packages() {
  git clone -q . "$1"
  (
    cd "$1"
    export CCACHE_DISABLE=1
    quietly "$work/build.log" cmake --preset release
    quietly "$work/build.log" cmake --build --preset release
    quietly "$work/build.log" cpack --config build/release/CPackConfig.cmake -B "$1/packages"
  )
}

build_packages "$work/one"
build_packages "$work/another place"
for package in "$work/one/packages"/*.deb; do
  cmp "$package" "$work/another place/packages/$(basename "$package")"
  echo "Twice the same: $(basename "$package")"
done
