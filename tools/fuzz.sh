#!/usr/bin/env bash
# fuzz.sh BUILD_FOLDER SECONDS [TARGET…]: runs the fuzz targets of a build, or these, side by side for that long, from the
# generated seeds. A finding is written to the build folder and ends the run with a failure. The time-out of an input leaves
# room for a busy machine.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$1
seconds=$2
shift 2
targets=(metadata names profile raw-plane repair round-trip structure)
[ $# -eq 0 ] || targets=("$@")

fuzz() {
  mkdir -p "$build/fuzz/corpus-$1"
  "$build/fuzz/tessaly-fuzz-$1" -max_total_time="$seconds" -timeout=60 -rss_limit_mb=2048 -max_len=8192 \
    -dict="$root/fuzz/dng.dict" \
    -artifact_prefix="$build/fuzz/finding-$1-" -print_final_stats=1 "$build/fuzz/corpus-$1" "$build/fuzz/seeds" \
    >"$build/fuzz/$1.log" 2>&1
}

"$build/fuzz/tessaly-fuzz-seeds" "$build/fuzz/seeds"
declare -A processes
for target in "${targets[@]}"; do
  fuzz "$target" &
  processes[$target]=$!
done

status=0
for target in "${targets[@]}"; do
  log=$build/fuzz/$target.log
  if wait "${processes[$target]}"; then
    echo "Fuzzed $target for $seconds seconds: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs"
  else
    tail -n 60 "$log" >&2
    echo "Fuzzing of $target has found something" >&2
    status=1
  fi
done
exit $status
