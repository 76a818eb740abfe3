#!/usr/bin/env bash
# fuzz.sh BUILD_FOLDER SECONDS: runs every fuzz target of a build for that long, from the generated seeds. A finding is
# written to the build folder and ends the run with a failure.
set -euo pipefail
build=$1
seconds=$2

"$build/fuzz/tessaly-fuzz-seeds" "$build/fuzz/seeds"
for target in metadata raw-plane round-trip; do
  corpus=$build/fuzz/corpus-$target
  log=$build/fuzz/$target.log
  mkdir -p "$corpus"
  if ! "$build/fuzz/tessaly-fuzz-$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=8192 \
    -artifact_prefix="$build/fuzz/finding-$target-" -print_final_stats=1 "$corpus" "$build/fuzz/seeds" \
    >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    echo "Fuzzing of $target has found something" >&2
    exit 1
  fi
  echo "Fuzzed $target for $seconds seconds: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs"
done
