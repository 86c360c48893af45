#!/usr/bin/env python3
"""Writes documents with the keldll command, and looks at what LibreOffice makes of them.

    python3 tests/office/document_test.py --keldll PATH [unittest arguments]
"""

import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
from itertools import groupby
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests/support"))
import keldll_command  # noqa: E402
import libreoffice  # noqa: E402

LEFT = 18  # points
CELL = 6.001  # of ten points of Courier New
FIXED_PITCH = r"LiberationMono|CourierNew|Cousine"
CODES = re.compile("\x01|\x1b(?:E|F|-0|-1)")
ROWS = [["No", "Account", "Town", "Amount"],
        ["1", "Cash in hand   (box  two)", "a\\b{c}", "1,250.00"],
        ["2", "नकद खाता हिन्दी शर्मा", "क्षत्रिय की स्त्री", "12,345,678.00"],
        ["3", "શ્રી ગણેશ વાસણ ભંડાર અને બીજી લાંબી લીટી", "પ્રકાશ", "7.50"],
        ["4", "Café Zürich ₹ 99", "日本語 会社", "999.00"],
        ["5", "חברה שלום בע\"מ", "مرحبا السلام", "3.00"]]


class DocumentTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def document(self, source, *options):
        """The pages of a report, as they are in its page file, and as words of the document's PDF."""
        done = subprocess.run(
            [keldll_command.keldll, "report", *source, "--stamp", "now", *options, *(word for kind in ("rpt", "doc") for word in ("-o", self.folder / f"r.{kind}"))],
            env={**os.environ, "KELDLL_HOME": str(self.folder / "home"), "XDG_CONFIG_HOME": str(self.folder)}, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.pdf = libreoffice.convert(self.folder / "r.doc", "pdf", self.folder)
        text = (self.folder / "r.rpt").read_text(encoding="utf-8")
        pages = [page.splitlines() for page in text.split("\f\n")[:-1]]
        words = libreoffice.words(self.pdf)
        self.assertEqual(len(words), len(pages))
        return pages, words

    @staticmethod
    def tool(name, *options):
        return subprocess.run([name, *options], capture_output=True, text=True, check=True).stdout

    def assert_same_lines(self, page, words, cell=CELL):
        """The words of a page stand where they stand in its lines; of a line that is not all ASCII only the last one is looked at."""
        lines = [CODES.sub("", line) for line in page if CODES.sub("", line).strip()]
        rows = [sorted(row) for _, row in groupby(sorted(words, key=lambda word: (word[1] + word[3]) / 2), lambda word: round((word[1] + word[3]) / 2 / 6))]
        self.assertEqual(len(rows), len(lines))
        for line, row in zip(lines, rows):
            if line.isascii():
                self.assertEqual([word[-1] for word in row], line.split())
                for word, place in zip(row, re.finditer(r"\S+", line)):
                    self.assertAlmostEqual(word[0], LEFT + cell * place.start(), delta=1, msg=word)
            else:
                self.assertTrue(line.endswith(row[-1][-1]), (line, row))

    def test_the_trial_balance(self):
        books, table = self.folder / "books.db", self.folder / "table.json"
        for program in (["make_books.py", "--entries", "2000", books], ["trial_balance.py", books, "-o", table]):
            subprocess.run([sys.executable, PROJECT / "examples/ledger" / program[0], *program[1:]], check=True, capture_output=True)
        pages, words = self.document([table])
        for page, of_page in zip(pages, words):
            self.assert_same_lines(page, of_page)
        self.assertRegex(self.tool("pdfinfo", self.pdf), r"Title: +Trial Balance\n(.*\n)*Page size: +612 x 86[45]")
        self.assertRegex(self.tool("pdffonts", self.pdf), FIXED_PITCH)
        bold = set(re.findall(r"<b>\s*(.*?)\s*</b>", self.tool("pdftohtml", "-xml", "-i", "-stdout", self.pdf)))
        wanted = {CODES.sub("", text).strip(" ₹") for page in pages for line in page for text in re.findall("\x1bE(.*?)\x1bF", line)}
        self.assertGreater(len(wanted), 20)
        self.assertEqual(bold - {"₹"}, wanted)  # a sign that comes from another font

    def test_columns_line_up_in_any_script_and_font(self):
        table = self.folder / "table.json"
        table.write_text(json.dumps({"TextMatrix": ROWS, "ColWidth": [4, 26, 20, 16], "ColAlignment": [1, 1, 1, 7],
                                     "CellFontBold": [[2, 1]], "CellFontUnderline": [[1, 1]]}), encoding="utf-8")
        window_fonts = [("DejaVu Sans Mono", 0.602), ("Nimbus Mono PS", 0.6), ("Liberation Mono", 0.6)]
        for font, em in [(None, 0.6001), *window_fonts]:
            with self.subTest(font=font):
                options = () if font is None else ("--set", "Mode=WINDOWS", "--set", f"Font={font}", "--set", "FontSize=9", "--set", "Portrait=False")
                pages, words = self.document([table], "--set", "PageHeight=11", "--set", "TopMargin=0", "--set", "Lines=40", *options)
                self.assert_same_lines(pages[0], words[0], cell=em * (10 if font is None else 9))
                amounts = {amount for *_, amount in ROWS[1:]}
                right = [word[2] for word in words[0] if word[-1] in amounts]
                self.assertEqual(len(right), len(amounts))
                self.assertLess(max(right) - min(right), 1)
                self.assertIn("Page size:       " + ("612 x 792" if font is None else "792 x 612"), self.tool("pdfinfo", self.pdf))
                text = self.tool("pdftotext", self.pdf, "-")
                for word in ("शर्मा", "ગણેશ", "会社", "חברה", "Zürich", "a\\b{c}"):
                    self.assertIn(word, text)

    def test_a_long_report_page_for_page(self):
        table = self.folder / "table.csv"
        table.write_text("No,Account,Amount\n" + "".join(f"{row},Account   {row},{row}.50\n" for row in range(10000)), encoding="utf-8")
        pages, words = self.document([table])
        self.assertGreater(len(pages), 180)
        for page, of_page in zip(pages, words):
            self.assert_same_lines(page, of_page)


if __name__ == "__main__":
    keldll_command.main(__doc__)
