#!/usr/bin/env python3
"""Prints with the keldll command to the queues of a real print server, and looks at what the printers got.

    python3 tests/printing/queue_printing_test.py --keldll PATH [unittest arguments]
"""

import csv
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from cups_server import CupsServer

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
import keldll_command  # noqa: E402

ROWS = 200
FORM_FEED = "\f"
LETTER = (612, 792)  # points
REACHED = 18  # points from the paper's edge, as the queue's printer description says
RESOLUTION = 72  # a pixel is a point
SYSTEM = ("--set", "Mode=WINDOWS", "--set", "TopMargin=0", "--set", "Lines=60")


def ink(picture):
    """Left, top, right and bottom of what is not white on a portable grey map."""
    magic, size, most, pixels = picture.split(b"\n", 3)
    assert (magic, most) == (b"P5", b"255")
    width, height = map(int, size.split())
    rows = [pixels[y * width:(y + 1) * width] for y in range(height)]
    inked = [y for y, row in enumerate(rows) if min(row) < 255]
    columns = [x for row in rows for x in range(width) if row[x] < 255]
    return min(columns), inked[0], max(columns) + 1, inked[-1] + 1


class QueuePrintingTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.server = CupsServer(self.folder / "cups")
        self.addCleanup(self.server.close)
        self.environment = {**self.server.environment, "KELDLL_HOME": str(self.folder / "home"),
                            "XDG_CONFIG_HOME": str(self.folder / "config"), "XDG_RUNTIME_DIR": str(self.folder),
                            "TMPDIR": str(self.folder / "tmp"), "QT_QPA_PLATFORM": ""}
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "LPDEST", "PRINTER"):
            self.environment.pop(name, None)
        (self.folder / "tmp").mkdir()
        with open(self.folder / "books.csv", "w", newline="", encoding="utf-8") as table:
            csv.writer(table).writerows([["No", "Account", "Amount"],
                                         *([row, f"Account é {row}", f"{row}.50"] for row in range(1, ROWS + 1))])

    def report(self, *options, printer=None):
        chosen = ["--set", f"PrinterDevice={printer}"] if printer else []
        return subprocess.run([str(keldll_command.keldll), "report", str(self.folder / "books.csv"), "--stamp", "now", *chosen, *options],
                              env=self.environment, stdin=subprocess.DEVNULL, capture_output=True, text=True)

    def prints(self, *options, printer=None):
        done = self.report("--print", *options, printer=printer)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.assertEqual(list((self.folder / "tmp").iterdir()), [], "nothing is left in the temporary folder")

    def refuses(self, *options, printer=None, said):
        done = self.report("--print", *options, printer=printer)
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertRegex(done.stderr, said)
        self.assertEqual(done.stderr.count("\n"), 1)

    def pages(self, *options):
        """The lines of every page, without the empty ones and the blanks between words."""
        self.assertEqual(self.report("-o", str(self.folder / "books.txt"), *options).returncode, 0)
        text = (self.folder / "books.txt").read_text(encoding="utf-8")
        return [self.words(page) for page in text.split(FORM_FEED) if page.strip()]

    @staticmethod
    def words(page):
        return [line.split() for line in page.splitlines() if line.strip()]

    @staticmethod
    def look(*command):
        return subprocess.run([*map(str, command)], check=True, stdout=subprocess.PIPE).stdout

    def assert_holds(self, document, expected):
        text = self.look("pdftotext", "-layout", document, "-").decode()
        self.assertEqual([self.words(page) for page in text.split(FORM_FEED)[:-1]], expected)

    def assert_printed(self, document, expected, size):
        self.assert_holds(document, expected)
        self.assertIn(f"Page size:       {size[0]} x {size[1]} pts", self.look("pdfinfo", document).decode())
        for page in range(1, len(expected) + 1):
            left, top, right, bottom = ink(self.look("pdftoppm", "-r", RESOLUTION, "-gray", "-f", page, "-l", page, document))
            self.assertTrue(REACHED - 1 <= left and right <= size[0] - REACHED + 1, (left, right))
            self.assertTrue(REACHED - 1 <= top and bottom <= size[1] - REACHED + 1, (top, bottom))
            self.assertLess(left, REACHED + 6, "text begins at the edge")

    def test_text_mode_sends_its_bytes_to_a_raw_queue(self):
        self.prints("--set", "Port=queue:raw", "--set", "Font=10 cpi", "--set", "PageHeight=12")
        self.report("-o", str(self.folder / "books.rpt"))
        job, = self.server.printed("raw")
        self.assertEqual(job.read_bytes(), b"\x1bC\0\x0c\x1bP" + (self.folder / "books.rpt").read_bytes() + b"\x1bC\0\0\x1b@")
        for queue, said in ("nosuch", "nosuch"), ("closed", "closed.*not accepting"):
            self.refuses("--set", f"Port=queue:{queue}", said=said)

    def test_system_printing_prints_the_pages_on_the_chosen_or_the_default_printer(self):
        expected = self.pages(*SYSTEM)
        self.assertGreaterEqual(len(expected), 4)
        self.prints(*SYSTEM, printer="pdf")
        self.prints(*SYSTEM, printer="Epson of last year")
        turned = ("--set", "Portrait=False", "--set", "FontSize=16")  # nearly twice too high
        self.prints(*SYSTEM, *turned, printer="pdf")
        self.prints(*SYSTEM, "--pages", "2-2", printer="pdf")
        chosen, default, landscape, part = self.server.printed("pdf")
        for document in chosen, default:
            self.assert_printed(document, expected, LETTER)
        self.assert_printed(landscape, expected, LETTER[::-1])
        self.assert_printed(part, expected[1:2], LETTER)

    def test_the_pdf_printer_writes_the_file_that_the_port_names(self):
        file = self.folder / "books.pdf"
        self.prints(*SYSTEM, "--set", f"Port={file}", printer="PDF")
        self.assert_holds(file, self.pages(*SYSTEM))
        self.refuses(*SYSTEM, printer="PDF", said="needs a file: .*as the port")  # there is no screen to ask on

    def test_a_stopped_printer_keeps_the_job_and_a_refusal_is_told(self):
        self.prints(*SYSTEM, printer="stopped")
        self.assertEqual(len(self.server.waiting("stopped")), 1)
        self.refuses(*SYSTEM, printer="closed", said="printer closed did not take the document: .*not accepting jobs")
        self.assertEqual(self.server.waiting("closed"), [])
        self.server.close()
        self.refuses(*SYSTEM, printer="pdf", said="no default printer.*print server")
        self.refuses("--set", "Port=queue:raw", said="raw")


if __name__ == "__main__":
    keldll_command.main(__doc__)
