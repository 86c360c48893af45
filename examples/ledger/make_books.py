#!/usr/bin/env python3
"""Makes the books of a small trading firm for the year 2026-27 in an SQLite file."""

import argparse
import contextlib
import itertools
import os
import sqlite3
import sys
from decimal import Decimal
from pathlib import Path

import ledger_schema
import trading_firm as firm
from rupees import grouped
from trading_year import TradingYear

DEFAULT_ENTRIES = 12200  # about 3,000 vouchers
VOUCHERS_PER_BATCH = 2000


def main():
    args = parse_arguments()
    # The books take their name only when they are whole: what stood there before stays until then.
    unfinished = args.books.with_name(f".{args.books.name}.{os.getpid()}")
    try:
        with contextlib.closing(sqlite3.connect(unfinished, isolation_level=None)) as books:
            summary = make(books, args.entries, args.seed)
        os.replace(unfinished, args.books)
    except (OSError, sqlite3.Error) as error:
        sys.exit(f"make_books.py: {args.books}: {error}")
    finally:
        unfinished.unlink(missing_ok=True)
    print(f"{args.books}: {summary}")


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("books", metavar="BOOKS.db", type=Path)
    parser.add_argument("--entries", metavar="N", type=int, default=DEFAULT_ENTRIES,
                        help="about how many ledger entries to make (default %(default)s)")
    parser.add_argument("--seed", metavar="N", type=int, default=2026,
                        help="the same seed makes the same books (default %(default)s)")
    args = parser.parse_args()
    if args.entries < 1:
        parser.error("--entries must be 1 or more")
    return args


def make(books, entries, seed):
    # Safe without a journal: a file that is not finished is thrown away.
    books.executescript("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;" + ledger_schema.TABLES)
    books.execute("BEGIN")
    add_masters(books)
    add_vouchers(books, TradingYear(entries, seed).vouchers())
    books.execute("COMMIT")
    books.executescript(ledger_schema.INDEXES + ledger_schema.VIEWS + "ANALYZE;")
    return check(books)


def add_masters(books):
    group_id = {group.code: n for n, group in enumerate(firm.GROUPS, 1)}
    books.executemany("INSERT INTO AccountGroup VALUES (?, ?, ?, ?)",
                      ((group_id[group.code], group.code, group.name, group_id.get(group.code[:-1]))
                       for group in firm.GROUPS))
    books.executemany("INSERT INTO Account VALUES (?, ?, ?, ?, ?)",
                      ((n, account.code, account.name, group_id[account.group], float(account.opening))
                       for n, account in enumerate(firm.accounts(), 1)))
    account_id = ids_by_code(firm.accounts())
    books.executemany("INSERT INTO Party VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                      ((n, party.code, party.name, party.address1, party.address2, party.city, party.pin,
                        firm.STATES[firm.STATE_OF_CITY[party.city]], firm.gstin(party, n),
                        account_id[party.account_code])
                       for n, party in enumerate(firm.parties(), 1)))
    books.executemany("INSERT INTO StockItem VALUES (?, ?, ?, ?, ?, ?, ?)",
                      ((n, item.code, item.name, item.hsn, item.unit, float(item.rate), float(item.tax))
                       for n, item in enumerate(firm.ITEMS, 1)))


def add_vouchers(books, vouchers):
    account_id = ids_by_code(firm.accounts())
    party_id = ids_by_code(firm.parties())
    item_id = ids_by_code(firm.ITEMS)
    numbered = enumerate(vouchers, 1)
    while batch := list(itertools.islice(numbered, VOUCHERS_PER_BATCH)):
        books.executemany("INSERT INTO Voucher VALUES (?, ?, ?, ?, ?)",
                          ((n, voucher.number, voucher.date.isoformat(), voucher.type,
                            party_id[voucher.party.code] if voucher.party else None)
                           for n, voucher in batch))
        books.executemany("INSERT INTO Entry (VoucherId, Line, AccountId, Debit, Credit, Narration)"
                          " VALUES (?, ?, ?, ?, ?, ?)",
                          ((n, number, account_id[line.account], float(max(line.amount, Decimal(0))),
                            float(max(-line.amount, Decimal(0))), line.narration)
                           for n, voucher in batch for number, line in enumerate(voucher.lines, 1)))
        books.executemany("INSERT INTO VoucherItem (VoucherId, Line, ItemId, Qty, Rate, Amount)"
                          " VALUES (?, ?, ?, ?, ?, ?)",
                          ((n, number, item_id[line.item.code], float(line.qty), float(line.rate), float(line.amount))
                           for n, voucher in batch for number, line in enumerate(voucher.items, 1)))


def ids_by_code(rows):
    return {row.code: n for n, row in enumerate(rows, 1)}


def check(books):
    """One line that says what the books hold; leaves the program when they do not agree."""
    missing = books.execute("PRAGMA foreign_key_check").fetchone()
    if missing:
        sys.exit(f"make_books.py: a row of {missing[0]} refers to nothing in {missing[2]}")
    debit, credit = books.execute("SELECT CAST(ROUND(Debit * 100) AS INTEGER), CAST(ROUND(Credit * 100) AS INTEGER)"
                                  " FROM DayBookTotal").fetchone()
    if debit != credit:
        sys.exit(f"make_books.py: debits {grouped(Decimal(debit) / 100)} and credits"
                 f" {grouped(Decimal(credit) / 100)} differ")
    vouchers, = books.execute("SELECT COUNT(*) FROM Voucher").fetchone()
    entries, = books.execute("SELECT COUNT(*) FROM Entry").fetchone()
    return f"{vouchers} vouchers, {entries} entries, debits equal credits at {grouped(Decimal(debit) / 100)}"


if __name__ == "__main__":
    main()
