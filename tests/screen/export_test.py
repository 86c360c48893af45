#!/usr/bin/env python3
"""Exports a trial balance from the preview of the keldll command as a person does, on an X server.

    python3 tests/screen/export_test.py --keldll PATH [unittest arguments]
"""

import subprocess
from pathlib import Path

from screen_case import ScreenCase, keldll, keldll_command
from x_server import wait_for

LEDGER = Path(__file__).resolve().parents[2] / "examples" / "ledger"
OLE_FILE = b"\xd0\xcf\x11\xe0"
# In the order of the list: ending and first bytes.
FORMATS = [(".doc", b"{\\rtf1"), (".xls", OLE_FILE), (".txt", b"Kesar Trading"), (".xlsx", b"PK"), (".pdf", b"%PDF")]
APPLICATION, DISK_FILE, MAIL = range(3)
# What the desktop's programs are told, each argument on a line of its own.
RECORDER = '#!/bin/sh\nprintf "%s\\n" "$@" >"$0.new" && mv "$0.new" "$0.said"\n'


class ExportTest(ScreenCase):
    def setUp(self):
        super().setUp()
        self.programs = self.folder / "programs"
        self.programs.mkdir()
        for name in ("xdg-open", "xdg-email"):
            (self.programs / name).write_text(RECORDER)
            (self.programs / name).chmod(0o755)
        self.environment["PATH"] = f"{self.programs}:{self.environment['PATH']}"
        books, report = self.folder / "books.db", self.folder / "trial_balance.json"
        subprocess.run([LEDGER / "make_books.py", books, "--entries", "600"], check=True, stdout=subprocess.DEVNULL)
        subprocess.run([LEDGER / "trial_balance.py", books, "-o", report], check=True)
        self.process = subprocess.Popen([keldll(), "report", report, "--preview"], env=self.environment,
                                        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(self.end, self.process)
        self.preview = self.screen.window("Preview")

    def choose(self, format_index, destination):
        """Opens the dialog and leaves the keyboard on the list of destinations."""
        self.screen.focus(self.preview)
        self.screen.key("ctrl+e")
        self.dialog = self.screen.window("^Export Report$")
        self.screen.key("Home", *["Down"] * format_index, "Tab", "Home", *["Down"] * destination)

    def finish(self):
        self.screen.key("Return")
        self.screen.wait_for_no_window("^Export Report$")

    def said(self, program):
        """What a program was told, once."""
        told = self.programs / f"{program}.said"
        wait_for(program, told.exists)
        words = told.read_text().splitlines()
        told.unlink()
        return words

    def save_as(self, path):
        self.screen.key("alt+b")
        browse = self.screen.window("^Export Report As$")
        self.screen.type(path)
        self.screen.key("Return")
        self.screen.wait_for_no_window("^Export Report As$")
        self.assertNotEqual(browse, self.dialog)
        self.screen.focus(self.dialog)

    def test_every_format_goes_to_every_destination(self):
        for index, (ending, begins) in enumerate(FORMATS):
            with self.subTest(ending):
                self.choose(index, APPLICATION)
                self.finish()
                opened, = map(Path, self.said("xdg-open"))
                self.assertEqual(opened.suffix, ending)
                self.assertTrue(opened.read_bytes().startswith(begins))

                saved = self.folder / "it's a file"  # without its extension
                self.choose(index, DISK_FILE)
                self.save_as(saved)
                self.finish()
                self.assertTrue(Path(f"{saved}{ending}").read_bytes().startswith(begins))

                self.choose(index, MAIL)
                self.screen.key("Tab", "ctrl+a")
                self.screen.type("March 2027")
                self.finish()
                words = self.said("xdg-email")
                attached = Path(words[words.index("--attach") + 1])
                self.assertEqual(attached.name, f"March 2027{ending}")
                self.assertTrue(attached.read_bytes().startswith(begins))
        self.screen.focus(self.preview)
        self.screen.key("ctrl+o")
        out, err = self.process.communicate(timeout=60)
        self.assertEqual((self.process.returncode, out, err), (0, b"", b""))

    def test_a_program_that_is_missing_is_told_and_the_dialog_stays(self):
        self.choose(2, MAIL)
        self.screen.key("Tab", "ctrl+a")
        self.screen.type("x")
        (self.programs / "xdg-email").write_text("#!/bin/sh\nexit 3\n")
        self.screen.key("Return")
        wait_for("the message", lambda: len(self.screen.windows(".")) == 3)
        message, = set(self.screen.windows(".")) - {self.preview, self.dialog}
        self.screen.focus(message)
        self.screen.key("Return")
        wait_for("its end", lambda: len(self.screen.windows(".")) == 2)
        self.screen.focus(self.dialog)
        self.screen.key("Escape")
        self.screen.wait_for_no_window("^Export Report$")


if __name__ == "__main__":
    keldll_command.main(__doc__)
