#!/usr/bin/env python3
"""Uses the preview of the keldll command as a person does, on an X server.

    python3 tests/screen/preview_test.py --keldll PATH [unittest arguments]
"""

import json
import subprocess

from screen_case import ScreenCase, keldll, keldll_command
from x_server import XServer, wait_for

CAPTION = "Day Book of the Screen Test"
ROWS = 400
NEEDLE = "Needle"  # in one row only, far behind the first page
MARGIN = 40  # pixels of the screen's edge that are not looked at
BELOW_TOOL_BAR = 120

PAGE = (MARGIN, BELOW_TOOL_BAR, XServer.WIDTH - 2 * MARGIN, XServer.HEIGHT - BELOW_TOOL_BAR - MARGIN)
PAPER = 0.2  # of the screen at least


class PreviewTest(ScreenCase):
    def setUp(self):
        super().setUp()
        self.report = self.folder / "demo.json"
        rows = [[str(row), NEEDLE if row == ROWS - 10 else f"Account {row}", f"{row}.00"] for row in range(1, ROWS)]
        self.report.write_text(json.dumps({
            "Caption": CAPTION, "TextMatrix": [["No", "Account", "Amount"], *rows], "ColWidth": [6, 24, 12],
            "ColAlignment": [7, 1, 7], "CellFontBold": [[1, 1]]}))

    def open_preview(self, *options):
        process = subprocess.Popen([keldll(), "report", str(self.report), "--stamp", "now", "--preview", *options],
                                   env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, text=True)
        self.addCleanup(self.end, process)
        self.window = self.screen.window("Preview")
        return process

    def close_preview(self, process):
        self.screen.focus(self.window)
        self.screen.key("ctrl+o")
        out, err = process.communicate(timeout=60)
        self.assertEqual((process.returncode, out, err), (0, "", ""))

    def go_to_find_box(self):
        """An empty box is told by the Find button, and then gets the keyboard."""
        self.screen.key("ctrl+f")
        message, = wait_for("the message", lambda: set(self.screen.windows(".")) - {self.window})
        self.screen.focus(message)
        self.screen.key("Return")
        wait_for("its end", lambda: self.screen.windows(".") == [self.window])
        self.screen.focus(self.window)

    def choose_back_color(self):
        """Picks a colour of the palette's second row, and returns it."""
        self.go_to_find_box()
        self.screen.key("Tab", "Tab", "space")  # the Find button, the colour's button
        palette = self.screen.window("Page colour")
        left, top, width, height = self.screen.geometry(palette)
        place = left + width * 3 // 16, top + height // 4
        color = self.screen.pixel(*place)
        self.assertLess(self.screen.share(color, PAGE), PAPER)
        self.screen.click(*place)
        self.screen.wait_for_no_window("Page colour")
        return color

    def settings(self, key):
        return subprocess.run([keldll(), "settings", "get", key], env=self.environment, check=True, text=True,
                              stdout=subprocess.PIPE).stdout.strip()

    def test_pages_zoom_and_search(self):
        screen = self.screen
        process = self.open_preview()
        first = screen.changed_picture(PAGE, None)
        screen.key("ctrl+n")
        second = screen.changed_picture(PAGE, first)
        screen.key("ctrl+i")
        screen.changed_picture(PAGE, second)
        screen.key("ctrl+m")
        screen.wait_for_picture(PAGE, second)
        screen.key("ctrl+r")
        screen.wait_for_picture(PAGE, first)

        self.go_to_find_box()
        screen.wait_for_picture(PAGE, first)
        screen.type(NEEDLE.upper())
        screen.key("Return")
        found = screen.changed_picture(PAGE, first)
        self.assertEqual(screen.windows("Search"), [])
        # There is no second one; the message closes by itself.
        screen.key("Return")
        screen.window("Search")
        screen.wait_for_no_window("Search")
        screen.focus(self.window)
        screen.key("Return")
        screen.wait_for_picture(PAGE, found)
        self.close_preview(process)

        process = self.open_preview("--pages", "2-2")
        screen.wait_for_picture(PAGE, second)
        self.close_preview(process)

    def test_outputs_are_there_while_the_window_is_open(self):
        process = self.open_preview("-o", str(self.folder / "demo.txt"))
        self.assertIn(NEEDLE, (self.folder / "demo.txt").read_text())
        self.close_preview(process)

    def test_a_chosen_color_is_kept_for_the_next_preview(self):
        process = self.open_preview()
        color = self.choose_back_color()
        wait_for("the page in its new colour", lambda: self.screen.share(color, PAGE) > PAPER)
        self.close_preview(process)
        red, green, blue = color
        self.assertEqual(self.settings("Preview/BackColor"), str(blue << 16 | green << 8 | red))

        process = self.open_preview()
        wait_for("a page in the kept colour", lambda: self.screen.share(color, PAGE) > PAPER)
        self.close_preview(process)


if __name__ == "__main__":
    keldll_command.main(__doc__)
