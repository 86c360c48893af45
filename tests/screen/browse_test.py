#!/usr/bin/env python3
"""Uses the list window of the keldll command as a person does, on an X server.

    python3 tests/screen/browse_test.py --keldll PATH [unittest arguments]
"""

import re
import sqlite3
import subprocess
from pathlib import Path

from screen_case import ScreenCase, keldll, keldll_command
from x_server import XServer, wait_for

MAKE_BOOKS = Path(__file__).resolve().parents[2] / "examples" / "ledger" / "make_books.py"
# Wide headings leave room for the totals.
DAY_BOOK = "SELECT Credit AS [Credited amount], Debit AS [Debited amount], Number, Type, AccountName FROM DayBook"
FIRST_HEADING = 30, 47  # pixels from the window's corner
SALES = "[Type] = 'Sales'"


class BrowseTest(ScreenCase):
    def make_books(self):
        books = self.folder / "books.db"
        subprocess.run([MAKE_BOOKS, books, "--entries", "600"], check=True, stdout=subprocess.DEVNULL)
        return books

    def browse(self, title, *words):
        process = subprocess.Popen([keldll(), "browse", *map(str, words)], env=self.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(self.end, process)
        self.window = self.screen.window(title)
        return process

    def close(self, process):
        self.screen.focus(self.window)
        self.screen.key("Escape")
        out, err = process.communicate(timeout=60)
        self.assertEqual((process.returncode, out, err), (0, "", ""))

    def menu(self, letter):
        """An item of the menu on the current cell."""
        before = len(self.screen.windows(""))
        self.screen.key("Menu")
        wait_for("the menu", lambda: len(self.screen.windows("")) > before)
        self.screen.key(letter)

    def enter_condition(self, field, operation, value):
        """In the condition dialog, from the list of fields on."""
        self.screen.key("alt+d")
        self.screen.type(field)
        self.screen.key("alt+t")
        self.screen.type(operation)
        self.screen.key("alt+x", "ctrl+a")
        self.screen.type(value)
        self.screen.key("Return")

    def previewed(self):
        """The lines of the list's pages."""
        self.menu("w")
        self.screen.window("Preview")
        page_file, = (self.folder / "home").rglob("_kelFile.rpt")
        self.screen.key("ctrl+o")
        self.screen.wait_for_no_window("Preview")
        self.screen.focus(self.window)
        return page_file.read_text().splitlines()

    def settings(self, *words):
        return subprocess.run([keldll(), "settings", *words], env=self.environment, check=True, text=True,
                              stdout=subprocess.PIPE).stdout.strip()

    def test_the_day_book_is_sorted_filtered_totalled_and_printed(self):
        books = self.make_books()
        paper = self.folder / "paper.prn"
        self.settings("set", "Setup/Port", str(paper))
        process = self.browse("Day Book", "--db", books, "--sql", DAY_BOOK, "--caption", "Day Book", "--sums", "1",
                              "--formats", "0=#,##0.00,1=#,##0.00")
        credits, debits = zip(*sqlite3.connect(books).execute(
            f"SELECT Credit, Debit FROM DayBook WHERE {SALES} ORDER BY Credit"))

        left, top, _, _ = self.screen.geometry(self.window)
        self.screen.click(left + FIRST_HEADING[0], top + FIRST_HEADING[1])
        self.menu("e")
        self.screen.window("^Filter$")
        self.enter_condition("Type", "=", "Sales")
        wait_for("the filter", lambda: self.screen.windows(re.escape(SALES)))
        self.screen.focus(self.window)
        self.menu("c")  # totals the first column, too
        lines = self.previewed()
        amounts = [line.split()[0] for line in lines if "Sales" in line and SALES not in line]
        self.assertEqual(amounts, [f"{credit:,.2f}" for credit in credits])
        totals, = (line for line in lines if re.fullmatch(r" *[\d,.]+ +[\d,.]+", line))
        self.assertEqual(totals.split(), [f"{sum(credits):,.2f}", f"{sum(debits):,.2f}"])

        self.screen.key("ctrl+p")
        self.screen.window("Print")
        self.screen.key("Return")
        wait_for("the paper", lambda: paper.exists() and "End Of Report." in paper.read_text(errors="replace"))
        self.assertIn(totals, paper.read_text(errors="replace"))
        self.screen.wait_for_no_window("^Print")
        self.close(process)

    def test_a_record_is_found_and_edited(self):
        books = self.make_books()
        cities = "SELECT PartyId, City FROM Party ORDER BY PartyId"
        parties = sqlite3.connect(books).execute(cities).fetchall()
        number = parties[len(parties) // 2][0]
        process = self.browse("Parties", "--db", books, "--sql", "SELECT City, Name, PartyId FROM Party",
                              "--caption", "Parties", "--active", "0")
        self.screen.key("ctrl+f")
        self.screen.window("^Find$")
        self.enter_condition("PartyId", "=", len(parties) + 1)
        wait_for("the message", lambda: len(self.screen.windows("^Find$")) == 2)
        wait_for("its end by itself", lambda: len(self.screen.windows("^Find$")) == 1)
        self.screen.window("^Find$")
        self.enter_condition("PartyId", "=", number)
        self.screen.key("Escape")
        self.screen.wait_for_no_window("^Find$")

        self.screen.focus(self.window)
        self.screen.key("F2", "ctrl+a")
        self.screen.type("Wadhwan")
        self.screen.key("Return")
        self.close(process)
        changed = [(party, "Wadhwan" if party == number else city) for party, city in parties]
        self.assertEqual(sqlite3.connect(books).execute(cities).fetchall(), changed)

    def test_a_file_is_read_again_and_the_place_of_its_window_kept(self):
        table = self.folder / "sales.csv"
        table.write_text("Name,Amount\nAsha,10\n")
        process = self.browse("sales", table)
        table.write_text("Name,Amount\nAsha,10\nBela,20\n")
        self.screen.key("F5")
        self.assertTrue(any(line.startswith("Bela") for line in self.previewed()))
        self.screen.xdotool("windowsize", "--sync", self.window, 600, 400)
        self.close(process)

        process = self.browse("sales", table)
        self.assertEqual(self.screen.geometry(self.window)[2:], (600, 400))
        self.close(process)


if __name__ == "__main__":
    keldll_command.main(__doc__)
