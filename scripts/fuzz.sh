#!/usr/bin/env bash
# Builds the fuzz targets with sanitizers and runs each from its seed corpus.
#   scripts/fuzz.sh [SECONDS]     how long each target runs; 60 unless given
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
seconds=${1:-60}
cd "$root"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target grid_json_fuzz csv_fuzz page_file_fuzz preview_fuzz \
  condition_fuzz sql_rewrite_fuzz

# On the memory file system: the targets write their input to a file each time.
[ -w /dev/shm ] && export TMPDIR=/dev/shm
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TMPDIR="$work"
passed=0 failed=0
for name in grid_json csv page_file preview condition sql_rewrite; do
  mkdir "$work/$name"
  if "build/fuzz/fuzz/${name}_fuzz" -max_total_time="$seconds" -max_len=20000 -timeout=20 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="build/fuzz/$name-" "$work/$name" "fuzz/corpus/$name" \
    >"build/fuzz/$name.log" 2>&1; then
    echo "fuzz $name: $(grep -o 'stat::number_of_executed_units: *[0-9]*' "build/fuzz/$name.log" | grep -o '[0-9]*$') runs"
    passed=$((passed + 1))
  else
    tail -n 40 "build/fuzz/$name.log"
    failed=$((failed + 1))
  fi
done
echo "fuzz targets: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
