#!/usr/bin/env bash
# lint.sh BUILD_FOLDER: formatting of every C++ file and clang-tidy of the sources, by the compile commands of a build.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1

echo "Checking the formatting" >&2
git ls-files '*.cpp' '*.h' | xargs clang-format-14 --dry-run -Werror

# A source is looked at again only when it, a header or the rules are newer than its last clean look.
echo "Checking the sources" >&2
stamps=$build/tidy
mkdir -p "$stamps"
newest=$(git ls-files 'src/*.h' .clang-tidy | xargs ls -t | head -n 1)
check() {
  local stamp=$stamps/${1//\//_}
  if [ -e "$stamp" ] && [ "$stamp" -nt "$1" ] && [ "$stamp" -nt "$newest" ]; then return; fi
  clang-tidy-14 --quiet -p "$build" "$1" 2>/dev/null && touch "$stamp"
}
export -f check
export build stamps newest
git ls-files 'src/*.cpp' ':!src/app' | xargs -P "$(nproc)" -I{} bash -c 'check {}'
