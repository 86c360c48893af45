#!/usr/bin/env python3
"""Writes the trial balance of the books as a grid for `keldll report`."""

import argparse
import contextlib
import sqlite3
import sys
from pathlib import Path

import trading_firm as firm
from grid_json import Grid, bold_title
from rupees import RUPEE_SIGN, from_books, grouped

LEFT, RIGHT = 1, 7
WIDTHS = [6, 35, 18, 18]  # 80 characters with the dividers
DEBIT, CREDIT = 2, 3
INDENT = "  "


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("books", metavar="BOOKS.db", type=Path)
    parser.add_argument("-o", "--output", metavar="GRID.json", type=Path, help="default: standard output")
    args = parser.parse_args()
    try:
        with contextlib.closing(sqlite3.connect(f"{args.books.resolve().as_uri()}?mode=ro", uri=True)) as books:
            grid = trial_balance(books)
        grid.write(args.output)
    except (OSError, sqlite3.Error) as error:
        sys.exit(f"trial_balance.py: {args.books}: {error}")


def trial_balance(books):
    groups = books.execute("SELECT Code, Name FROM AccountGroup ORDER BY Code").fetchall()
    accounts = {}
    for group, code, name, debit, credit in books.execute(
            "SELECT GroupCode, AccountCode, AccountName, ClosingDebit, ClosingCredit FROM TrialBalance"
            " WHERE ClosingDebit <> ClosingCredit"):
        accounts.setdefault(group, []).append((code, name, from_books(debit), from_books(credit)))

    grid = Grid("Trial Balance", [bold_title(firm.FIRM_NAME), firm.FIRM_ADDRESS, "As at 31 March 2027"],
                ["Code", "Account", "Debit", "Credit"], WIDTHS, [LEFT, LEFT, RIGHT, RIGHT])
    debit = credit = 0
    for code, name in groups:
        if len(code) == 1:
            group_debit, group_credit = add_group(grid, groups, accounts, code, name)
            grid.add()
            debit += group_debit
            credit += group_credit
    # The sign keeps the underline code away from the first digit: the text export reads code and digit as a size code.
    grid.add("", "GRAND TOTAL", RUPEE_SIGN + grouped(debit), RUPEE_SIGN + grouped(credit),
             bold=True, underlined=(DEBIT, CREDIT))
    return grid


def add_group(grid, groups, accounts, code, name):
    """Head, accounts, sub-groups and total of a group; returns the total's debit and credit."""
    indent = INDENT * (len(code) - 1)
    grid.add("", indent + name, bold=True)
    debit = credit = 0
    for account, account_name, account_debit, account_credit in accounts.get(code, ()):
        grid.add(account, indent + INDENT + account_name, amount(account_debit), amount(account_credit))
        debit += account_debit
        credit += account_credit
    for child, child_name in groups:
        if child[:-1] == code:
            child_debit, child_credit = add_group(grid, groups, accounts, child, child_name)
            debit += child_debit
            credit += child_credit
    grid.add("", f"{indent}Total {name}", amount(debit), amount(credit), bold=True)
    return debit, credit


def amount(value):
    return grouped(value) if value else ""


if __name__ == "__main__":
    main()
