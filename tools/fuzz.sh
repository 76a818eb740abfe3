#!/usr/bin/env bash
# fuzz.sh BUILD_FOLDER SECONDS: runs every fuzz target of a build for that long, from the generated seeds.
set -euo pipefail
build=$1
seconds=$2

"$build/fuzz/tessaly-fuzz-seeds" "$build/fuzz/seeds"
for target in metadata raw-plane round-trip; do
  corpus=$build/fuzz/corpus-$target
  mkdir -p "$corpus"
  echo "Fuzzing: $target, $seconds seconds"
  # A finding is written to the build folder and ends the run.
  "$build/fuzz/tessaly-fuzz-$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=8192 \
    -artifact_prefix="$build/fuzz/finding-$target-" -print_final_stats=1 "$corpus" "$build/fuzz/seeds" 2>&1 |
    grep -E '^(stat::number_of_executed_units|==|SUMMARY|MS:|artifact)' || true
  test "${PIPESTATUS[0]}" -eq 0
done
