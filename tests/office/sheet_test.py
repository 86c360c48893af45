#!/usr/bin/env python3
"""Writes sheets with the keldll command, and looks at what LibreOffice reads in them.

    python3 tests/office/sheet_test.py --keldll PATH [unittest arguments]
"""

import json
import os
import re
import subprocess
import sys
import tempfile
import unicodedata
import unittest
import xml.etree.ElementTree as xml
import zipfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
import keldll_command  # noqa: E402
import libreoffice  # noqa: E402

MAIN = {"m": "http://schemas.openxmlformats.org/spreadsheetml/2006/main"}
CODES = re.compile("\x01|\x1b(?:E|F|-0|-1)")
MARGIN = 3
WIDTHS = [6, 20, 0, 18, 22]  # the third column is not printed
RIGHT = {2, 3}  # of the columns that are
NUMBERS = ["0", "0.00", "2500", "-2500", "007", ".50", "1,234.00", "-12,345,678.90", "1,23,456.00", "-12,34,567.00", "1,00,00,000",
           "12,34,56,78,901.25", "1,500.00-", "+5.00", "5.00+", "0.1", "999999999999.125", "100"]
TEXTS = ["-0.00", "1,2,3", "5.", "12345678901234567", "=1+1", "+A1", "-A1", "@SUM(A1)", "_x0041_", "<a&b>", "01/04/2026", "12 Dr", "'5", "\"5\""]
ACCOUNTS = ["Cash in hand", "  two in front", "नकद खाता", "શ્રી ગણેશ", "日本語 会社 株式", "Café Zürich ₹", "007", "=A1", "a name that is too long for its column"]


def graphemes(text):
    """Characters with their marks, and the cells that each takes."""
    for cluster in re.findall(r"(?s).[\u0300-\u036f\u0900-\u0903\u093a-\u094f\u0a81-\u0a83\u0abc-\u0acd]*", text):
        yield cluster, 2 if unicodedata.east_asian_width(cluster[0]) in "WF" else 1


def cut(line):
    """The cells of a line of the page file."""
    line = CODES.sub("", line).rstrip(" \f")
    ends = [MARGIN - 1]
    ends += [ends[-1] + sum(width + 1 for width in WIDTHS[:i + 1] if width) for i, width in enumerate(WIDTHS) if width]
    pieces, column, place = [""] * len(ends), 0, 0
    for cluster, cells in graphemes(line):
        place += cells
        while column + 1 < len(ends) and place - 1 > ends[column]:
            column += 1
        pieces[column] += cluster
    return [piece.rstrip() for piece in (pieces[1:] if any(pieces[1:]) else [pieces[0], "", "", ""])]


class SheetTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def report(self, source, *options):
        """Makes r.rpt, r.xlsx and r.xls; the lines of the report."""
        done = subprocess.run(
            [keldll_command.keldll, "report", source, "--stamp", "now", *options, *(word for kind in ("rpt", "xlsx", "xls") for word in ("-o", self.folder / f"r.{kind}"))],
            env={**os.environ, "KELDLL_HOME": str(self.folder / "home"), "XDG_CONFIG_HOME": str(self.folder)}, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        return (self.folder / "r.rpt").read_bytes().decode().split("\r\n")[:-1]

    def grid(self, **more):
        account = [ACCOUNTS[i % len(ACCOUNTS)] for i in range(len(NUMBERS + TEXTS))]
        rows = [["No", "Account", "Hidden", "Amount", "Other"],
                *([f"{i:03}", account[i], "no", text, text if i % 2 else ""] for i, text in enumerate(NUMBERS + TEXTS))]
        source = self.folder / "grid.json"
        source.write_text(json.dumps({
            "Caption": "Cash: a/b [x]", "TextMatrix": rows, "ColWidth": WIDTHS, "ColAlignment": [1, 1, 1, 7, 7],
            "CellFontBold": [[3, 1], [3, 3]], "CellFontUnderline": [[3, 3], [8, 4]],
            "ReportTitle": ["ACME Traders, whose title is longer than all of the columns of the report together, and goes on", "2026-27"], **more}))
        return source

    def sheet_xml(self, part="xl/worksheets/sheet1.xml"):
        with zipfile.ZipFile(self.folder / "r.xlsx") as parts:
            self.assertIsNone(parts.testzip())
            for name in parts.namelist():
                xml.fromstring(parts.read(name))  # well-formed
            return xml.fromstring(parts.read(part))

    def assert_same_cells(self, lines, rows):
        for number, line in enumerate(lines):
            expected = cut(line)
            row = rows[number] if number < len(rows) else []
            shown = [*row, *[""] * len(expected)][:max(len(row), len(expected))]
            trimmed = [[text.strip() if column in RIGHT else text for column, text in enumerate(texts)] for texts in (shown, expected)]
            self.assertEqual(trimmed[0], trimmed[1], line)
        self.assertLessEqual(len(rows), len(lines))

    def test_both_kinds_of_sheet_show_every_cell_as_the_report_does(self):
        for divider in "False", "True":
            lines = self.report(self.grid(), "--set", f"LeftMargin={MARGIN}", "--set", f"PrintColumnDivider={divider}", "--set", "Lines=30")
            self.assertGreater(len(lines), 70)
            for kind in "xlsx", "xls":
                (name, rows), = libreoffice.sheets(self.folder / f"r.{kind}", self.folder).items()
                self.assertEqual(name, "Cash_ a_b _x_")
                self.assert_same_cells(lines, rows)

    def test_numbers_of_right_aligned_columns_are_numbers_and_looks_stay(self):
        lines = self.report(self.grid(), "--set", f"LeftMargin={MARGIN}", "--set", "PrintColumnDivider=True")
        styles = self.sheet_xml("xl/styles.xml")
        fonts = styles.findall("m:fonts/m:font", MAIN)
        self.assertEqual({font.find("m:name", MAIN).get("val") for font in fonts}, {"Courier New"})
        self.assertEqual({font.find("m:sz", MAIN).get("val") for font in fonts}, {"10"})
        looks = [fonts[int(style.get("fontId"))] for style in styles.findall("m:cellXfs/m:xf", MAIN)]
        cells = {cell.get("r"): cell for cell in self.sheet_xml().iter(f"{{{MAIN['m']}}}c")}
        first = next(i for i, line in enumerate(lines) if "000" in cut(line)[0]) + 1
        rows = iter(range(first, len(lines) + 1))
        found = []
        for text in NUMBERS + TEXTS:
            row = next(i for i in rows if cut(lines[i - 1])[2].rstrip("|").strip() == text)
            cell = cells[f"C{row}"]
            self.assertEqual(cells[f"A{row}"].get("t"), "inlineStr", "a left-aligned 007 is a text")
            self.assertEqual(cell.get("t"), None if text in NUMBERS else "inlineStr", text)
            if text in NUMBERS:
                value = float(text.strip("+-").replace(",", "")) * (-1 if "-" in text else 1)
                self.assertEqual(float(cell.find("m:v", MAIN).text), value)
            look = looks[int(cell.get("s"))]
            found.append((look.find("m:b", MAIN) is not None, look.find("m:u", MAIN) is not None))
        self.assertEqual([i for i, look in enumerate(found) if look != (False, False)], [2])
        self.assertEqual(found[2], (True, True))
        self.assertEqual(cells[f"C{first + 2}"].find("m:v", MAIN).text, "2500", "no digit is taken for a code")

    def test_a_sheet_is_printed_on_one_page_of_the_paper_of_the_report(self):
        for width, height, portrait, points in ("8.27", "11.69", True, (595, 842)), ("8.5", "14", False, (1008, 612)), ("14.875", "11", True, (1071, 792)):
            self.report(self.grid(), "--set", f"PageWidth={width}", "--set", f"PageHeight={height}", "--set", f"Portrait={portrait}", "--set", "Lines=20")
            for kind in "xlsx", "xls":
                pdf = libreoffice.convert(self.folder / f"r.{kind}", "pdf", self.folder)
                told = subprocess.run(["pdfinfo", pdf], capture_output=True, text=True, check=True).stdout
                self.assertRegex(told, r"Pages: +1\n")
                size = re.search(r"Page size: +([\d.]+) x ([\d.]+)", told)
                self.assertEqual(tuple(round(float(side)) for side in size.groups()), points, (kind, width, height))
        self.report(self.grid(), "--set", "Mode=WINDOWS", "--set", "Font=Liberation Serif", "--set", "FontSize=12")
        fonts = self.sheet_xml("xl/styles.xml").findall("m:fonts/m:font", MAIN)
        self.assertEqual({(font.find("m:name", MAIN).get("val"), font.find("m:sz", MAIN).get("val")) for font in fonts}, {("Liberation Serif", "12")})

    def test_a_report_longer_than_a_sheet_of_the_older_kind_goes_on_on_the_next(self):
        source = self.folder / "long.csv"
        source.write_text("No\n" + "".join(f"{row}\n" for row in range(70000)))
        lines = self.report(source, "--widths", "40")
        self.assertGreater(len(lines), 65536)
        for kind, rows_of_sheet in ("xlsx", 1048576), ("xls", 65536):
            sheets = libreoffice.sheets(self.folder / f"r.{kind}", self.folder)
            self.assertEqual(list(sheets), ["long", "long (2)"][:1 + len(lines) // rows_of_sheet])
            read = [row[0].strip() if row else "" for rows in sheets.values() for row in rows]
            self.assertEqual([text for text in read if text.isdigit()], [str(row) for row in range(70000)])
            self.assertLessEqual(len(sheets["long"]), rows_of_sheet)


if __name__ == "__main__":
    keldll_command.main(__doc__)
