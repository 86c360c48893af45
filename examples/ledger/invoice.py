#!/usr/bin/env python3
"""Writes one sales voucher of the books as an invoice: a grid for `keldll report`."""

import argparse
import contextlib
import sqlite3
import subprocess
import sys
import textwrap
from pathlib import Path

import trading_firm as firm
from grid_json import Grid, bold_title
from rupees import RUPEE_SIGN, from_books, grouped

LEFT, RIGHT = 1, 7
HEADINGS = ["Sl", "Description", "HSN", "Qty", "Unit", "Rate", "Amount"]
WIDTHS = [3, 31, 5, 6, 4, 10, 15]  # 80 characters with the dividers
ALIGNMENTS = [RIGHT, LEFT, LEFT, RIGHT, LEFT, RIGHT, RIGHT]
AMOUNT = HEADINGS.index("Amount")
TITLE_WIDTH = 80
TITLE_LINES = 10  # the invoice is printed with a top margin of as many lines


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("books", metavar="BOOKS.db", type=Path)
    parser.add_argument("--keldll", metavar="PATH", default="keldll", help="the command that writes amounts in words")
    parser.add_argument("--voucher", metavar="NUMBER", help="default: the sales voucher with the most lines")
    parser.add_argument("-o", "--output", metavar="GRID.json", type=Path, help="default: standard output")
    args = parser.parse_args()
    try:
        with contextlib.closing(sqlite3.connect(f"{args.books.resolve().as_uri()}?mode=ro", uri=True)) as books:
            grid = invoice(books, args.voucher or longest_sale(books), args.keldll)
        grid.write(args.output)
    except (OSError, sqlite3.Error, LookupError, subprocess.CalledProcessError) as error:
        sys.exit(f"invoice.py: {args.books}: {error}")


def longest_sale(books):
    row = books.execute("SELECT Number FROM InvoiceLines WHERE Type = 'Sales'"
                        " GROUP BY Number ORDER BY COUNT(*) DESC, SUM(Amount) DESC LIMIT 1").fetchone()
    if row is None:
        raise LookupError("no sales voucher in these books")
    return row[0]


def invoice(books, number, keldll):
    books.row_factory = sqlite3.Row
    voucher = books.execute("SELECT v.VoucherId, strftime('%d-%m-%Y', Date) AS Day, p.* FROM Voucher v"
                            " JOIN Party p ON p.PartyId = v.PartyId WHERE v.Type = 'Sales' AND v.Number = ?",
                            (number,)).fetchone()
    if voucher is None:
        raise LookupError(f"no sales voucher {number}")

    grid = Grid(f"Tax Invoice {number}    {voucher['Day']}", titles(voucher), HEADINGS, WIDTHS, ALIGNMENTS)
    for line in books.execute("SELECT * FROM InvoiceLines WHERE Number = ? ORDER BY Line", (number,)):
        grid.add(str(line["Line"]), line["ItemName"], line["Hsn"], f"{line['Qty']:g}", line["Unit"],
                 grouped(from_books(line["Rate"])), grouped(from_books(line["Amount"])))
    grid.add()
    total = add_entries(grid, books, voucher["VoucherId"])
    grid.add()
    grid.add("", in_words(keldll, total) + " Only")
    grid.add()
    grid.add("", f"For {firm.FIRM_NAME}", bold=True)
    grid.add()
    grid.add("", "Authorised signatory")
    return grid


def titles(party):
    """Seller and buyer above the page line, always the same number of lines."""
    lines = [bold_title(firm.FIRM_NAME), firm.FIRM_ADDRESS, f"GSTIN {firm.FIRM_GSTIN}", ""]
    street = ", ".join(filter(None, (party["Address1"], party["Address2"])))
    for text in (f"To: {party['Name']}", f"    {street}", f"    {party['City']} {party['Pin']}, {party['State']}",
                 f"    GSTIN {party['Gstin']}"):
        lines += textwrap.wrap(text, TITLE_WIDTH, subsequent_indent="    ")
    return (lines + [""] * TITLE_LINES)[:TITLE_LINES]


def add_entries(grid, books, voucher_id):
    """The rest of the bill is the voucher's own entries: goods, taxes, round off, and the party's line as the total."""
    party, *entries = books.execute("SELECT AccountName, Narration, Debit, Credit FROM DayBook WHERE VoucherId = ?"
                                    " ORDER BY Line", (voucher_id,)).fetchall()
    for entry in entries:
        name = "Value of goods" if entry["AccountName"] == "Sales" else entry["AccountName"]
        label = f"{name} {entry['Narration']}".rstrip()
        charged = from_books(entry["Credit"]) - from_books(entry["Debit"])
        grid.add("", label, "", "", "", "", grouped(charged))
    total = from_books(party["Debit"])
    # The sign keeps the underline code away from the first digit: the text export reads code and digit as a size code.
    grid.add("", "TOTAL", "", "", "", "", RUPEE_SIGN + grouped(total), bold=True, underlined=(AMOUNT,))
    return total


def in_words(keldll, amount):
    command = [keldll, "words", "--extended", str(amount)]
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout.strip()


if __name__ == "__main__":
    main()
