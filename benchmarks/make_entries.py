#!/usr/bin/env python3
"""Makes an SQLite table of eight columns with N rows, and the same rows as ready-made lines of a report."""

import sqlite3
import sys

SCHEMA = "CREATE TABLE Entry(No INTEGER, Voucher TEXT, Party TEXT, Date DATE, Debit DOUBLE, Credit DOUBLE, DC TEXT, Narration TEXT)"


def entry(number):
    debit, credit = number % 90000 + 0.25, number % 70000 + 0.5
    return (number, f"Voucher {number % 97}", "Party name of some kind", f"2026-04-{number % 28 + 1:02}",
            debit, credit, "Dr" if number % 2 else "Cr", f"narration {number % 1000}")


def entries(count, lines):
    for number in range(1, count + 1):
        row = entry(number)
        lines.write("%8d %-14s %-24s %-10s %14s %14s %-2s %s\r\n" % row)
        yield row


def main():
    database, lines, count = sys.argv[1], sys.argv[2], int(sys.argv[3])
    with sqlite3.connect(database) as connection, open(lines, "w", encoding="ascii", newline="") as file:
        connection.execute(SCHEMA)
        connection.executemany("INSERT INTO Entry VALUES (?,?,?,?,?,?,?,?)", entries(count, file))


main()
