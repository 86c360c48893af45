#!/usr/bin/env bash
# Builds the keldll command, makes a trading firm's books and prints four reports of them into demo-output/. Then it opens
# one of them in the preview or, without a display, draws a picture of every window.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
out="$root/demo-output"
keldll="$root/build/release/keldll"
# Neither used nor changed by the demo: the user's own settings and work files.
export KELDLL_HOME="$out/home" XDG_CONFIG_HOME="$out/config"

"$root/scripts/setup.sh"
(cd "$root" && cmake --preset release && cmake --build --preset release)

mkdir -p "$KELDLL_HOME" "$XDG_CONFIG_HOME"
printf '\n=== Books\n'
"$root/examples/ledger/make_books.py" "$out/books.db"
# 77 is the byte after ESC that sets a dot-matrix printer to 12 characters per inch (ESC "M").
"$keldll" settings set 'Characters/12 cpi' 77
"$root/examples/ledger/print_reports.sh" "$keldll" "$out/books.db" "$out"

show_preview() {
  local command='build/release/keldll report demo-output/trial_balance.json --preview'
  [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || return
  printf '\n=== Preview: the demo goes on when you close its window (Ctrl+O)\n$ %s\n' "$command"
  (cd "$root" && $command)
}

if ! show_preview; then
  printf '\n=== Pictures of the windows, since there is no display to open them on\n'
  "$root/build/release/keldll_pictures" "$out/trial_balance.json" "$out/pictures"
fi

printf '\n=== Files written\n'
(cd "$out" && ls -l books.db ./*.json ./*.rpt ./*.txt)
cat <<END

=== Try next, in $root
build/release/keldll report --db demo-output/books.db --sql 'SELECT Code, Name, City FROM Party' --caption Parties
build/release/keldll report demo-output/trial_balance.json --preview
build/release/keldll report demo-output/trial_balance.json --set PrintColumnDivider=True --pages 2-2
build/release/keldll words --extended 123456789.50
END
