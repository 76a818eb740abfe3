#!/usr/bin/env bash
# run-commands.sh PROGRAMS SCENE DOCUMENT…: runs every block of shell commands in these documents as it is printed, in a
# home folder of its own, and fails where one of them does. A block behind a comment "parsed only: REASON" is only
# parsed: it needs what a test cannot give.
set -euo pipefail
programs=$(realpath "$1")
scene=$(realpath "$2")
shift 2
documents=()
for document in "$@"; do
  documents+=("$(realpath "$document")")
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# blocks DOCUMENT: writes its blocks as NUMBER.run or NUMBER.parse into the working folder.
blocks() {
  awk -v folder="$work" '
    /^<!-- parsed only: / { kind = "parse"; next }
    /^```sh$/ { inside = 1; file = sprintf("%s/%03d.%s", folder, ++number, kind == "" ? "run" : kind); next }
    /^```/ { if (inside) close(file); inside = 0; kind = ""; next }
    inside { print > file }
    !inside && NF { kind = "" }' "$1"
}

# make_home DOCUMENT: what its commands take for granted: frames, photographs, and a stored profile unless it makes one.
make_home() {
  rm -rf "$work/home"
  mkdir -p "$work/home"
  cp -a "$scene"/. "$work/home"
  ! grep -q '^tessaly-cli calibrate .*--save' "$1" || rm -r "$work/home/settings"
}

run_block() {
  (
    cd "$work/home"
    env -u XDG_DATA_HOME -u XDG_CONFIG_HOME HOME="$work/home" TESSALY_HOME="$work/home/settings" LC_ALL=C.UTF-8 \
      PATH="$programs:$PATH" bash -euo pipefail "$1" >"$work/output" 2>&1 </dev/null
  ) || { printf '%s: this block fails:\n%s\n-- it prints:\n%s\n' "$2" "$(cat "$1")" "$(cat "$work/output")" >&2; return 1; }
}

status=0
count=0
for document in "${documents[@]}"; do
  make_home "$document"
  rm -f "$work"/*.run "$work"/*.parse
  blocks "$document"
  for block in "$work"/*.run "$work"/*.parse; do
    [ -e "$block" ] || continue
    count=$((count + 1))
    bash -n "$block" || status=1
    [[ $block == *.parse ]] || run_block "$block" "$document" || status=1
  done
done
echo "$count blocks of commands"
[ "$count" -gt 0 ] || status=1
exit "$status"
