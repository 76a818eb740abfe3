#!/usr/bin/env bash
# make-pages.sh PROGRAM: writes the manual page and the completions of tessaly-cli anew, from the program's own grammar.
set -euo pipefail
program=$(realpath "$1")
cd "$(dirname "$0")/.."

"$program" help --page man >man/tessaly-cli.1
for shell in bash zsh fish; do
  "$program" help --page "$shell" >"completions/tessaly-cli.$shell"
done
