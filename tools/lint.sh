#!/usr/bin/env bash
# lint.sh: formatting of every C++ file. lint.sh --tidy BUILD_FOLDER also lets clang-tidy look at the sources, by the
# compile commands of that build; it takes minutes.
set -euo pipefail
cd "$(dirname "$0")/.."

echo "Checking the formatting" >&2
git ls-files '*.cpp' '*.h' | xargs clang-format-14 --dry-run -Werror

[ "${1:-}" = --tidy ] || exit 0
echo "Checking the sources" >&2
git ls-files 'src/*.cpp' ':!src/app' |
  xargs -P "$(nproc)" -n 1 clang-tidy-14 --quiet --extra-arg=-Wno-unknown-warning-option -p "$2"
