#!/usr/bin/env python3
"""Checks the example books, and with the keldll command the pages printed from them.

    python3 tests/ledger/books_test.py [--keldll PATH] [unittest arguments]
"""

import argparse
import os
import re
import sqlite3
import subprocess
import sys
import tempfile
import unittest
from decimal import ROUND_HALF_UP, Decimal
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
LEDGER = ROOT / "examples" / "ledger"
PAISA = Decimal("0.01")
ENTRIES = 2500
LONGEST_VOUCHER = 8  # entries: party, goods, two taxes at two rates each, round off; and one spare

keldll = None


def setUpModule():
    global folder, books, said
    folder = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(folder.cleanup)
    path = Path(folder.name) / "books.db"
    said = make_books(path)
    books = sqlite3.connect(path)
    unittest.addModuleCleanup(books.close)


def make_books(path, *options):
    return run(LEDGER / "make_books.py", path, *(options or ("--entries", ENTRIES))).stdout


def run(program, *arguments, check=True, env=None):
    return subprocess.run([str(program), *map(str, arguments)], check=check, env=env, text=True, encoding="utf-8",
                          stdout=subprocess.PIPE, stderr=None if check else subprocess.PIPE)


def exact(amount):
    return Decimal(repr(float(amount)))


def grouped(amount):
    """Checked against the books' own two ways of grouping, so written in a third."""
    whole, paise = f"{amount:.2f}".split(".")
    return re.sub(r"(?<=\d)(?=(\d\d)*\d{3}$)", ",", whole) + "." + paise


class BooksTest(unittest.TestCase):
    def test_every_voucher_balances_to_the_paisa(self):
        difference = {}
        for voucher, debit, credit in books.execute("SELECT VoucherId, Debit, Credit FROM Entry"):
            difference[voucher] = difference.get(voucher, 0) + exact(debit) - exact(credit)
        self.assertEqual(len(difference), one("SELECT COUNT(*) FROM Voucher"))
        self.assertEqual({voucher: amount for voucher, amount in difference.items() if amount}, {})

    def test_amounts_are_stored_rounded_to_the_paisa(self):
        for table, column in (("Entry", "Debit"), ("Entry", "Credit"), ("VoucherItem", "Rate"),
                              ("VoucherItem", "Amount"), ("Account", "Opening")):
            for amount, in books.execute(f"SELECT {column} FROM {table}"):
                self.assertEqual(exact(amount), exact(amount).quantize(PAISA), f"{table}.{column}")

    def test_the_maker_says_the_total_of_the_entries(self):
        total = sum(exact(debit) for debit, in books.execute("SELECT Debit FROM Entry"))
        self.assertEqual(said.count("\n"), 1)
        self.assertIn(f"debits equal credits at {grouped(total)}", said)

    def test_the_number_of_entries_is_the_one_asked_for(self):
        self.assertAlmostEqual(one("SELECT COUNT(*) FROM Entry"), ENTRIES, delta=LONGEST_VOUCHER)

    def test_trial_balance_agrees_with_the_entries_and_in_itself(self):
        closing = {code: exact(opening) for code, opening in books.execute("SELECT Code, Opening FROM Account")}
        for code, debit, credit in books.execute("SELECT a.Code, Debit, Credit FROM Entry JOIN Account a"
                                                 " USING (AccountId)"):
            closing[code] += exact(debit) - exact(credit)
        rows = books.execute("SELECT AccountCode, ClosingDebit, ClosingCredit FROM TrialBalance").fetchall()
        self.assertEqual({code: exact(debit) - exact(credit) for code, debit, credit in rows}, closing)
        self.assertEqual(sum(exact(row[1]) for row in rows), sum(exact(row[2]) for row in rows))

    def test_party_ledger_carries_the_balance_from_entry_to_entry(self):
        balance = {}
        for party, debit, credit, shown in books.execute("SELECT PartyCode, Debit, Credit, Balance FROM PartyLedger"):
            balance[party] = balance.get(party, 0) + exact(debit) - exact(credit)
            self.assertEqual(exact(shown), balance[party], party)
        closing = {code: exact(debit) - exact(credit) for code, debit, credit in books.execute(
            "SELECT p.Code, ClosingDebit, ClosingCredit FROM TrialBalance JOIN Account a ON a.Code = AccountCode"
            " JOIN Party p USING (AccountId)")}
        self.assertEqual(balance, closing)

    def test_day_book_lists_every_entry_once_by_date_with_its_amount_in_text(self):
        rows = books.execute("SELECT Date, Number, Line, Debit, Credit, DebitText, CreditText FROM DayBook").fetchall()
        self.assertEqual(len({row[1:3] for row in rows}), one("SELECT COUNT(*) FROM Entry"))
        self.assertEqual([row[0] for row in rows], sorted(row[0] for row in rows))
        for _, number, _, debit, credit, debit_text, credit_text in rows:
            self.assertEqual([debit_text, credit_text],
                             [grouped(exact(amount)) if amount else "" for amount in (debit, credit)], number)

    def test_bills_charge_their_goods_and_the_tax_on_them(self):
        for voucher, kind, number in books.execute("SELECT VoucherId, Type, Number FROM Voucher"
                                                   " WHERE Type IN ('Sales', 'Purchase')"):
            goods = {}
            for qty, rate, amount, percent in books.execute(
                    "SELECT Qty, Rate, Amount, TaxRate FROM InvoiceLines WHERE Number = ?", (number,)):
                self.assertEqual(exact(qty) * exact(rate), exact(amount), number)
                goods[percent] = goods.get(percent, 0) + exact(amount)
            entries = books.execute("SELECT AccountName, Debit + Credit FROM DayBook WHERE VoucherId = ?", (voucher,))
            charged = {}
            for account, amount in entries:
                charged[account[-4:]] = charged.get(account[-4:], 0) + exact(amount)
            self.assertEqual(charged["ales" if kind == "Sales" else "ases"], sum(goods.values()), number)
            taxes = {"CGST": 200, "SGST": 200} if "CGST" in charged else {"IGST": 100}
            for tax, parts in taxes.items():
                expected = sum((value * exact(percent) / parts).quantize(PAISA, rounding=ROUND_HALF_UP)
                               for percent, value in goods.items())
                self.assertEqual(charged[tax], expected, number)

    def test_cash_is_never_spent_before_it_is_there(self):
        cash = exact(one("SELECT Opening FROM Account WHERE Name = 'Cash in hand'"))
        for debit, credit in books.execute("SELECT Debit, Credit FROM DayBook WHERE AccountName = 'Cash in hand'"):
            cash += exact(debit) - exact(credit)
            self.assertGreaterEqual(cash, 0)

    def test_the_festival_month_is_the_busiest(self):
        busiest, = books.execute("SELECT strftime('%m', Date) AS Month FROM Voucher GROUP BY Month"
                                 " ORDER BY COUNT(*) DESC LIMIT 1").fetchone()
        self.assertEqual(busiest, "10")

    def test_the_same_seed_makes_the_same_books_and_another_seed_others(self):
        dumps = []
        for seed in (5, 5, 6):
            path = Path(folder.name) / "again.db"
            make_books(path, "--entries", 600, "--seed", seed)
            again = sqlite3.connect(path)
            dumps.append("\n".join(again.iterdump()))
            again.close()
        self.assertEqual(dumps[0], dumps[1])
        self.assertNotEqual(dumps[0], dumps[2])

    def test_books_that_cannot_be_written_leave_nothing_behind(self):
        with tempfile.TemporaryDirectory() as place:
            (Path(place) / "taken.db").mkdir()
            result = run(LEDGER / "make_books.py", Path(place) / "taken.db", "--entries", 50, check=False)
            self.assertEqual(result.returncode, 1)
            self.assertIn("taken.db", result.stderr)
            self.assertEqual(os.listdir(place), ["taken.db"])


class PagesTest(unittest.TestCase):
    """The four reports, printed by the very commands that the demo shows."""

    REPORTS = {"trial_balance": (5, 80), "invoice": (10, 80), "day_book": (5, 96), "party_ledger": (5, 96)}
    PAGE_LENGTH = 66
    AMOUNT = re.compile(r"([\d,]+\.\d\d)$")

    @classmethod
    def setUpClass(cls):
        cls.out = Path(folder.name) / "pages"
        env = {**os.environ, "KELDLL_HOME": folder.name + "/home", "XDG_CONFIG_HOME": folder.name + "/config"}
        cls.shown = run(LEDGER / "print_reports.sh", keldll, Path(folder.name) / "books.db", cls.out, env=env).stdout

    def test_page_files_hold_whole_pages_with_number_and_foot(self):
        for name, (top_margin, width) in self.REPORTS.items():
            lines = self.lines(name, ".rpt")
            count, rest = divmod(len(lines), self.PAGE_LENGTH)
            self.assertEqual(rest, 0, name)
            self.assertGreater(count, 0, name)
            for page in range(1, count + 1):
                *body, end = lines[(page - 1) * self.PAGE_LENGTH:page * self.PAGE_LENGTH]
                self.assertEqual(end, "\f", f"{name} page {page}")
                self.assertNotIn("\f", "".join(body), f"{name} page {page}")
                self.assertTrue(body[top_margin].endswith(f" Page {page}"), body[top_margin])
                self.assertEqual(len(body[top_margin]), width)
                self.assertEqual(body[-2], "-" * width, f"{name} page {page}")
                self.assertTrue(body[-1].endswith("End Of Report." if page == count else "Contd..."), body[-1])

    def test_texts_are_the_page_files_without_codes(self):
        for name in self.REPORTS:
            text = self.lines(name, ".txt")
            self.assertEqual(len(text), len(self.lines(name, ".rpt")), name)
            self.assertNotRegex("".join(text), "[\x01\x1b]", name)

    def test_no_line_of_plain_letters_is_wider_than_the_page(self):
        for name, (_, width) in self.REPORTS.items():
            self.assertEqual([line for line in self.lines(name, ".txt") if line.isascii() and len(line) > width], [])

    def test_trial_balance_prints_every_closing_balance_and_their_totals(self):
        lines = self.lines("trial_balance", ".txt")
        debit, credit = (sum(exact(amount) for amount, in books.execute(f"SELECT {column} FROM TrialBalance"))
                         for column in ("ClosingDebit", "ClosingCredit"))
        self.assertEqual([line.split() for line in lines if "GRAND TOTAL" in line],
                         [["GRAND", "TOTAL", "\u20b9" + grouped(debit), "\u20b9" + grouped(credit)]])
        printed = {line[:4]: self.AMOUNT.search(line)[1] for line in lines if re.match(r"\d{4} ", line)}
        self.assertEqual(printed, {code: grouped(exact(closing)) for code, closing in books.execute(
            "SELECT AccountCode, ClosingDebit + ClosingCredit AS Closing FROM TrialBalance WHERE Closing <> 0")})

    def test_trial_balance_wraps_a_long_name_without_losing_a_word(self):
        code, name = books.execute("SELECT AccountCode, AccountName FROM TrialBalance"
                                   " WHERE ClosingDebit <> ClosingCredit"
                                   " ORDER BY LENGTH(AccountName) DESC LIMIT 1").fetchone()
        lines = iter(self.lines("trial_balance", ".txt"))
        shown = next(line for line in lines if line.startswith(code))[7:42].split()
        for line in lines:
            if line[:7].strip():
                break
            shown += line[7:42].split()
        self.assertEqual(shown, name.split())

    def test_trial_balance_has_bold_heads_and_an_underlined_grand_total(self):
        lines = self.lines("trial_balance", ".rpt")
        self.assertTrue(any(line.startswith("\x01") and "\x1bEAssets" in line for line in lines))
        total = next(line for line in lines if "GRAND TOTAL" in line)
        self.assertEqual([total.count(code) for code in ("\x1b-1", "\x1b-0")], [2, 2])
        self.assertEqual(total.count("\x1bE"), total.count("\x1bF"))

    def test_invoice_prints_its_total_in_figures_and_words(self):
        number = re.search(r"Tax Invoice (\S+)", "\n".join(self.lines("invoice", ".txt")))[1]
        total = exact(one("SELECT Debit FROM DayBook WHERE Line = 1 AND Number = ?", number))
        lines = self.lines("invoice", ".txt")
        self.assertEqual([line.split() for line in lines if "TOTAL" in line], [["TOTAL", "\u20b9" + grouped(total)]])
        words = run(keldll, "words", "--extended", total).stdout.strip()
        self.assertIn(words + " Only", " ".join(" ".join(lines).split()))

    def test_day_book_prints_every_debit_and_credit(self):
        printed = {"debit": Decimal(0), "credit": Decimal(0)}
        lines = self.lines("day_book", ".txt")
        for line in lines:
            amount = self.AMOUNT.search(line)
            if amount and "Total of the year" not in line:
                printed["credit" if "  To " in line else "debit"] += Decimal(amount[1].replace(",", ""))
        total = sum(exact(debit) for debit, in books.execute("SELECT Debit FROM Entry"))
        self.assertEqual(printed, {"debit": total, "credit": total})
        self.assertEqual([line.split()[-2:] for line in lines if "Total of the year" in line], [[grouped(total)] * 2])

    def test_party_ledger_prints_every_balance_up_to_the_closing_one(self):
        expected = [text for text, in books.execute("SELECT BalanceText FROM PartyLedger WHERE PartyCode = 'C002'")]
        printed = [re.search(r"(\S+ (Dr|Cr)|Nil)$", line) for line in self.lines("party_ledger", ".txt")]
        self.assertEqual([balance[1] for balance in printed if balance], expected)

    def test_each_report_is_shown_with_its_command_and_without_form_feeds(self):
        self.assertEqual(self.shown.count("\n$ "), len(self.REPORTS))
        self.assertEqual(self.shown.count(" Page 1\n"), len(self.REPORTS))
        self.assertNotIn("\f", self.shown)

    def lines(self, name, ending):
        *lines, after_last = (self.out / (name + ending)).read_bytes().decode().split("\r\n")
        self.assertEqual(after_last, "", name)
        return lines


def one(sql, *arguments):
    return books.execute(sql, arguments).fetchone()[0]


def main():
    global keldll
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    built = ROOT / "build" / "release" / "keldll"
    parser.add_argument("--keldll", metavar="PATH", type=Path, default=built if built.exists() else None,
                        help="the command; without it only the books are checked")
    options, rest = parser.parse_known_args()
    if options.keldll:
        keldll = options.keldll.resolve(strict=True)
    else:
        global PagesTest
        del PagesTest
        print("books_test.py: no keldll command, so no pages are checked", file=sys.stderr)
    unittest.main(argv=[sys.argv[0], *rest])


if __name__ == "__main__":
    main()
