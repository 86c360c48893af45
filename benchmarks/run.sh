#!/usr/bin/env bash
# Runs the benchmarks; each prints a ratio to its yardstick, measured in the same run.
#   benchmarks/run.sh [report|layout|words|preview|search|pdf|sheet|text|spool|recordset|toolkit|browse]...    all unless named
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
here="$root/benchmarks"
"$root/scripts/setup.sh"
cd "$root"
cmake --preset release -DKELDLL_BUILD_BENCHMARKS=ON >/dev/null
cmake --build --preset release --target keldll_cli layout_benchmark words_benchmark preview_benchmark search_benchmark pdf_benchmark sheet_benchmark text_benchmark \
  spool_benchmark recordset_benchmark toolkit_benchmark browse_benchmark
build="$root/build/release"

# Data and results lie on the memory file system, so that the disk takes no part.
work=$(mktemp -d /dev/shm/keldll-benchmark-XXXXXX)
trap 'rm -rf "$work"' EXIT
export KELDLL_HOME="$work/home" XDG_CONFIG_HOME="$work/config"

# seconds COMMAND...: the least wall time of three runs; peak memory in KiB goes to $work/memory.
seconds() {
  for _ in 1 2 3; do
    command time -f '%e %M' -o "$work/time" -a "$@" >"$work/out"
  done
  sort -n "$work/time" | head -n 1 | cut -d' ' -f1
  sort -k2 -n "$work/time" | tail -n 1 | cut -d' ' -f2 >"$work/memory"
  rm "$work/time"
}

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }

report_benchmark() {
  local rows ours memory yardstick first=
  for rows in 1000000 10000000; do
    python3 "$here/make_entries.py" "$work/books.db" "$work/lines" "$rows"
    ours=$(seconds "$build/keldll" report --db "$work/books.db" --sql 'SELECT * FROM Entry' \
      --widths 8,14,24,10,14,14,2,20 -o "$work/books.rpt")
    memory=$(cat "$work/memory")
    yardstick=$(seconds pr -l 66 "$work/lines")
    echo "report: $rows rows to .rpt $ours s, pr -l 66 $yardstick s, ratio $(ratio "$ours" "$yardstick") (at most 1); peak $memory KiB"
    [ -z "$first" ] || echo "report: ten times the rows take $(ratio "$ours" "$first") times as long"
    first=$ours
    rm "$work/books.db" "$work/lines" "$work/books.rpt"
  done
}

layout_benchmark() {
  "$build/benchmarks/layout_benchmark"
  echo "layout: times_cat is the ratio to cat of the page file (at most 5)"
}

words_benchmark() {
  command -v npm >/dev/null || { echo "words: the yardstick needs nodejs and npm" >&2; return 1; }
  (cd "$work" && npm install --silent --no-audit --no-fund to-words >/dev/null)
  awk 'BEGIN { srand(7); for (i = 0; i < 1000000; ++i) printf "%.2f\n", rand() * 10 ^ (1 + i % 9) }' >"$work/amounts"
  local yardstick ours
  cp "$here/words_benchmark.js" "$work/"
  yardstick=$(cd "$work" && node words_benchmark.js "$work/amounts" | cut -d' ' -f2)
  "$build/benchmarks/words_benchmark" "$work/amounts" | while read -r name ours _; do
    echo "words: $name $ours s for a million amounts, to-words $yardstick s, $(ratio "$yardstick" "$ours") times as fast (at least 20)"
  done
}

preview_benchmark() {
  local pages
  for pages in 1000 100000; do
    "$build/benchmarks/preview_benchmark" write "$work/report.rpt" "$pages"
    "$build/benchmarks/preview_benchmark" show "$work/report.rpt" "$pages" 2>/dev/null
    rm "$work/report.rpt"
  done
}

# search_times KIND: texts that are not in the report, beside grep without regard to case.
search_times() {
  local text ours yardstick
  for text in zebra 'no such text' 'Party nomination' 'नकद खाते' '~'; do
    yardstick=$(seconds sh -c 'LC_ALL=C.UTF-8 grep -ic "$1" "$2" || true' sh "$text" "$work/report.rpt")
    ours=$("$build/benchmarks/search_benchmark" "$work/report.rpt" "$text" | cut -d' ' -f1)
    echo "search: $1, absent '$text' $ours s, grep -ic $yardstick s, ratio $(ratio "$ours" "$yardstick") (at most 1)"
  done
}

search_benchmark() {
  local name="iif(No % 2, Party, 'नकद खाता')" widths=8,14,24,10,14,14,2,20
  python3 "$here/make_entries.py" "$work/books.db" "$work/lines" 5400000  # 100,000 pages
  "$build/keldll" report --db "$work/books.db" --sql 'SELECT * FROM Entry' --widths $widths -o "$work/report.rpt"
  search_times "$(du -m "$work/report.rpt" | cut -f1) MB of ASCII"
  sed -i $'s/^\(.*\)\(Party name\)/\x01\\1\x1bE\\2\x1bF/' "$work/report.rpt"
  search_times "a code in most lines"
  "$build/keldll" report --db "$work/books.db" --widths $widths -o "$work/report.rpt" --sql \
    "SELECT No, Voucher, $name AS Party, Date, Debit, Credit, DC, Narration FROM Entry"
  search_times "Hindi in half of the lines"
  rm "$work/books.db" "$work/lines" "$work/report.rpt"
}

pdf_benchmark() {
  local pages
  "$build/benchmarks/pdf_benchmark" speed "$work" 1000
  for pages in 2000 20000; do "$build/benchmarks/pdf_benchmark" memory "$work" "$pages"; done
  rm "$work"/*.pdf "$work/r.rpt"
}

sheet_benchmark() {
  local rows
  "$build/benchmarks/sheet_benchmark" speed "$work" 1000000
  for rows in 100000 1000000; do "$build/benchmarks/sheet_benchmark" memory "$work" "$rows"; done
  rm "$work"/*.xlsx "$work/r.rpt"
}

text_benchmark() {
  mkdir "$work/text"
  "$build/benchmarks/text_benchmark" "$work/text" 15000
  rm -r "$work/text"
}

spool_benchmark() {
  mkdir "$work/spool"
  KELDLL_SPOOL="$build/keldll-spool" "$build/benchmarks/spool_benchmark" 10000 "$work/spool"
  rm -r "$work/spool"
}

recordset_benchmark() {
  local rows
  for rows in 1000000 10000000; do
    "$build/benchmarks/recordset_benchmark" make "$work/books.db" "$rows"
    "$build/benchmarks/recordset_benchmark" run "$work/books.db"
    rm "$work/books.db"
  done
}

toolkit_benchmark() {
  "$build/benchmarks/recordset_benchmark" make "$work/books.db" 200000
  "$build/benchmarks/toolkit_benchmark" "$work/books.db"
  rm "$work/books.db"
}

browse_benchmark() {
  local rows program
  for rows in 100000 1000000 10000000; do "$build/benchmarks/recordset_benchmark" make "$work/$rows.db" "$rows"; done
  for rows in 100000 1000000; do "$build/benchmarks/browse_benchmark" report "$work/$rows.db"; done
  "$build/benchmarks/browse_benchmark" list "$work/1000000.db" "$work/10000000.db"
  rm "$work"/*.db
  for program in sqlitebrowser xdotool Xvfb; do
    command -v $program >/dev/null || { echo "browse: side by side needs $program" >&2; return 1; }
  done
  python3 "$here/browse_side_by_side.py" --keldll "$build/keldll" --tables "$work/tables"
  rm -r "$work/tables"
}

for name in "${@:-report layout words preview search pdf sheet text spool recordset toolkit browse}"; do
  for benchmark in $name; do "${benchmark}_benchmark"; done
done
