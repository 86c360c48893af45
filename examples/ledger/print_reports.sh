#!/usr/bin/env bash
# Prints the four reports of the books, each as page file and as text, and shows each one's command and first page.
#   print_reports.sh KELDLL BOOKS.db FOLDER
set -euo pipefail

if [ $# -ne 3 ]; then
  echo "usage: print_reports.sh KELDLL BOOKS.db FOLDER" >&2
  exit 2
fi
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# The commands are shown as one would type them, so the paths stand in them quoted for the shell.
keldll=$(printf '%q' "$1")
books=$(printf '%q' "$2")
out=$(printf '%q' "$3")
out_folder=$3
reports=$(printf '%q' "$here/reports")

mkdir -p "$3"
"$here/trial_balance.py" "$2" -o "$3/trial_balance.json"
"$here/invoice.py" "$2" --keldll "$1" -o "$3/invoice.json"

print_report() {  # heading, name of its files, command without the outputs
  local command="$3 -o $out/$2.rpt -o $out/$2.txt"
  printf '\n=== %s\n$ %s\n\n' "$1" "$command"
  eval "$command"
  sed '/\f/q' "$out_folder/$2.txt" | tr -d '\f\r'
}

print_report "Trial balance, first page" trial_balance \
  "$keldll report $out/trial_balance.json"

# The invoice's names and addresses stand in its top margin.
print_report "Invoice" invoice \
  "$keldll report $out/invoice.json --set TopMargin=10 --set Lines=55"

print_report "Day book, first page" day_book \
  "$keldll report --db $books --sql \"\$(cat $reports/day_book.sql)\" \\
    --caption 'Day Book' --title 'Kesar Trading Company' --title '1 April 2026 to 31 March 2027' \\
    --widths 10,10,36,18,18 --align l,l,l,r,r --set 'Font=12 cpi' --set Cols=96 \\
   "

print_report "Ledger of one party, first page" party_ledger \
  "$keldll report --db $books --sql \"\$(cat $reports/party_ledger.sql)\" \\
    --caption 'Party Ledger' --title 'Kesar Trading Company' --title 'શ્રી ગણેશ વાસણ ભંડાર (C002), 2026-27' \\
    --widths 10,10,22,16,16,17 --align l,l,l,r,r,r --set 'Font=12 cpi' --set Cols=96 \\
   "
