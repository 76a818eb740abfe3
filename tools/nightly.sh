#!/usr/bin/env bash
# nightly.sh [PART…]: what takes too long to run for every change; without a PART all of them, one after the other:
#   faults      the command line with a fault at every call and every allocation
#   exhaustive  small files cut at every length and with every byte of their structure set to every value
#   races       two programs with four workers each on one folder, 200 times
#   threads     the tests of the command line and of everything with threads under ThreadSanitizer
#   memory      the tests of the window, and a long random walk through it, under AddressSanitizer
#   fuzz        all fuzz targets, FUZZ_SECONDS (3600) each, then what they reach
# Prints the figures; ends with a failure where one part has found something.
set -uo pipefail
source "$(dirname "$0")/setup.sh"
cd "$root"

tests() {
  QT_QPA_PLATFORM=offscreen build/dev/tests/reliability/tessaly-reliability-tests --gtest_filter="$1" --gtest_brief=1
}

faults() {
  build_preset dev tessaly-cli tessaly-fault-injector tessaly-fault-runner || return
  local what status=0
  for what in calls memory; do
    build/dev/tests/reliability/tessaly-fault-runner build/dev/tessaly-cli \
      build/dev/tests/reliability/libtessaly-fault-injector.so "$what" || status=1
  done
  return $status
}

exhaustive() {
  build_preset dev tessaly-reliability-tests && TESSALY_EXHAUSTIVE=1 tests '*Exhaustive*'
}

races() {
  build_preset dev tessaly-reliability-tests && TESSALY_ROUNDS=200 tests 'ConcurrentRuns.*'
}

threads() {
  local folders=(platform repair calibration batch cli reliability) folder status=0
  local targets=("${folders[@]/#/tessaly-}")
  build_preset tsan "${targets[@]/%/-tests}" || return
  for folder in "${folders[@]}"; do
    ctest --test-dir "build/tsan/tests/$folder" --output-on-failure --parallel "$(nproc)" --timeout 1200 \
      --exclude-regex 'SensorRecall|ReferenceComparison' || status=1
  done
  return $status
}

memory() {
  local seed
  export QT_QPA_PLATFORM=offscreen LSAN_OPTIONS="suppressions=$root/tools/leaks.supp"
  build_preset asan tessaly-app-tests tessaly-random-walk || return
  ctest --test-dir build/asan/tests/app --output-on-failure --parallel "$(nproc)" --timeout 1200 || return
  for seed in {1..10}; do
    build/asan/tests/app/tessaly-random-walk "$seed" 2000 || return
  done
}

fuzz() {
  install_packages fuzz && build_preset fuzz tessaly-fuzzers && tools/fuzz.sh build/fuzz "${FUZZ_SECONDS:-3600}"
}

[ $# -gt 0 ] || set -- faults exhaustive races threads memory fuzz
status=0
for part in "$@"; do
  printf '\n== %s (after %d min) ==\n' "$part" $((SECONDS / 60))
  "$part" || { echo "$part has found something" >&2; status=1; }
done
exit $status
