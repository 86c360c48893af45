#!/usr/bin/env bash
# Builds the fuzz targets with sanitizers and runs each from its seed corpus.
#   scripts/fuzz.sh [SECONDS]     how long each target runs; 60 unless given
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
seconds=${1:-60}
cd "$root"
cmake --preset asan >/dev/null
cmake --build --preset asan --target grid_json_fuzz csv_fuzz page_file_fuzz preview_fuzz \
  condition_fuzz sql_rewrite_fuzz format_pattern_fuzz export_fuzz

# On the memory file system: the targets write their input to a file each time.
[ -w /dev/shm ] && export TMPDIR=/dev/shm
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TMPDIR="$work" LSAN_OPTIONS="suppressions=$root/tests/support/leaks.supp:print_suppressions=0"
passed=0 failed=0

# run NAME: runs a target; what it prints goes to its log.
run() {
  mkdir "$work/$1"
  "build/asan/fuzz/$1_fuzz" -max_total_time="$seconds" -max_len=20000 -timeout=20 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="build/asan/fuzz/$1-" "$work/$1" "fuzz/corpus/$1" >"build/asan/fuzz/$1.log" 2>&1
}

# tell NAME PROCESS: waits for a run and tells its result.
tell() {
  if wait "$2"; then
    echo "fuzz $1: $(grep -o 'stat::number_of_executed_units: *[0-9]*' "build/asan/fuzz/$1.log" | grep -o '[0-9]*$') runs"
    passed=$((passed + 1))
  else
    tail -n 40 "build/asan/fuzz/$1.log"
    failed=$((failed + 1))
  fi
}

# Two at a time.
targets=(grid_json csv page_file preview condition sql_rewrite format_pattern export)
for ((i = 0; i < ${#targets[@]}; i += 2)); do
  run "${targets[i]}" & first=$!
  second=
  [ $((i + 1)) -lt ${#targets[@]} ] && { run "${targets[i + 1]}" & second=$!; }
  tell "${targets[i]}" "$first"
  [ -n "$second" ] && tell "${targets[i + 1]}" "$second"
done
echo "fuzz targets: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
