#!/usr/bin/env bash
# Builds the keldll command, makes a trading firm's books and lays four reports of them out into demo-output/. It prints the
# invoice in both modes, into files in the printer's place, and makes a document and sheets of the trial balance. Then it opens one report in the preview and the day book in the
# list window or, without a display, draws a picture of every window.
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

# run COMMAND: shows a command as one would type it in the project's folder, and runs it there.
run() {
  printf '$ %s\n' "$1"
  (cd "$root" && eval "$1")
}

printf '\n=== Invoice on paper, text mode: what a dot-matrix printer gets (a file stands in its place)\n'
run "build/release/keldll report demo-output/invoice.json --set TopMargin=10 --set Lines=55 \\
    --print --set Port=demo-output/invoice.prn"
head -n 5 "$out/invoice.prn" | cat -v

printf '\n=== Invoice on paper, Windows mode: through the printer "PDF"\n'
run "build/release/keldll report demo-output/invoice.json --set Mode=WINDOWS --set TopMargin=10 --set Lines=58 \\
    --print --set PrinterDevice=PDF --set Port=demo-output/invoice_windows.pdf"
run "build/release/keldll report demo-output/invoice.json --set TopMargin=10 --set Lines=55 -o demo-output/invoice.pdf"
mkdir -p "$out/pictures"
for pages in invoice invoice_windows; do pdftoppm -r 96 -png "$out/$pages.pdf" "$out/pictures/$pages"; done
(cd "$root" && ls demo-output/pictures/invoice*.png)

printf '\n=== Trial balance as document and sheets, read back by LibreOffice\n'
run "build/release/keldll report demo-output/trial_balance.json -o demo-output/trial_balance.doc \\
    -o demo-output/trial_balance.xlsx -o demo-output/trial_balance.xls"
for ending in doc xls; do
  run "soffice --headless -env:UserInstallation=file://$out/office-profile --convert-to pdf --outdir demo-output/from_$ending \\
    demo-output/trial_balance.$ending" >/dev/null
  pdftoppm -r 60 -png -l 1 "$out/from_$ending/trial_balance.pdf" "$out/pictures/trial_balance_$ending"
done
(cd "$root" && ls demo-output/pictures/trial_balance_*.png)

day_book='SELECT Date, Number, Type, AccountName, Narration, Debit, Credit FROM DayBook'
browse="build/release/keldll browse --db demo-output/books.db --sql '$day_book' \\
    --caption 'Day Book' --sums 5,6 --formats '0=dd/mm/yyyy,5=#,##0.00,6=#,##0.00'"

show_windows() {
  [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || return
  printf '\n=== Preview: the demo goes on when you close its window (Ctrl+O)\n'
  run "build/release/keldll report demo-output/trial_balance.json --preview" || return
  printf '\n=== List of the day book: the demo goes on when you close its window (Escape)\n'
  run "$browse"
}

if ! show_windows; then
  printf '\n=== Pictures of the windows, since there is no display to open them on\n'
  "$root/build/release/keldll_pictures" --books "$out/books.db" "$out/trial_balance.json" "$out/pictures"
fi

printf '\n=== Files written\n'
(cd "$out" && ls -l books.db ./*.json ./*.rpt ./*.txt ./*.pdf ./*.prn ./*.doc ./*.xls*)
cat <<END

=== Try next, in $root
build/release/keldll report --db demo-output/books.db --sql 'SELECT Code, Name, City FROM Party' --caption Parties
build/release/keldll report demo-output/trial_balance.json --preview
$browse
build/release/keldll report demo-output/trial_balance.json -o demo-output/trial_balance.pdf
build/release/keldll setup
build/release/ledger_vouchers demo-output/books.db
build/release/keldll report demo-output/trial_balance.json --set PrintColumnDivider=True --pages 2-2
build/release/keldll words --extended 123456789.50
END
