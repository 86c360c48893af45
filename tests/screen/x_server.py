"""An X server without a monitor, its keyboard and mouse, and what is on its screen."""

import os
import struct
import subprocess
import time
from pathlib import Path

PATIENCE = 60  # seconds; a machine may be busy
POLL = 0.02
STEADY = 10  # looks that must be alike before a picture counts as drawn


def wait_for(what, look):
    """Looks again and again until there is something to see, and returns it."""
    deadline = time.monotonic() + PATIENCE
    while time.monotonic() < deadline:
        seen = look()
        if seen:
            return seen
        time.sleep(POLL)
    raise AssertionError(f"{what}: not within {PATIENCE} seconds")


class XServer:
    """Xvfb on a display that is free. Close it with close()."""

    WIDTH, HEIGHT = 1280, 800
    # A dump of the screen begins with 25 numbers: sizes and formats.
    HEADER = struct.Struct(">25I")
    HEADER_SIZE, BYTES_PER_PIXEL_BITS, BYTES_PER_LINE, COLORS = 0, 11, 12, 19
    COLOR_ENTRY = 12  # bytes

    def __init__(self, folder):
        # Without -noreset the server begins anew whenever its last client has gone, which may be the one that
        # looked for a window just before the window's program came.
        read_end, write_end = os.pipe()
        self.frame_buffer = Path(folder) / "Xvfb_screen0"
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{self.WIDTH}x{self.HEIGHT}x24",
             "-fbdir", str(folder), "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as answer:
            self.display = ":" + answer.readline().strip()
        self.environment = {**os.environ, "DISPLAY": self.display, "QT_QPA_PLATFORM": "xcb"}

    def close(self):
        self.process.terminate()
        self.process.wait()

    # The keyboard and the mouse.

    def key(self, *keys):
        self.xdotool("key", *keys)

    def type(self, text):
        self.xdotool("type", text)

    def click(self, x, y):
        self.xdotool("mousemove", x, y, "click", 1)

    # Windows.

    def window(self, title):
        """Waits for a window whose title matches and gives it the keyboard."""
        window = wait_for(f"a window {title}", lambda: self.windows(title))[0]
        self.focus(window)
        return window

    def focus(self, window):
        """There is no window manager that would do it."""
        self.xdotool("windowfocus", "--sync", window)

    def windows(self, title):
        found = self.xdotool("search", "--onlyvisible", "--name", title, check=False)
        return found.split()

    def wait_for_no_window(self, title):
        wait_for(f"the end of the window {title}", lambda: not self.windows(title))

    def geometry(self, window):
        """Left, top, width and height on the screen."""
        said = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", window).split())
        return tuple(int(said[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def xdotool(self, *words, check=True):
        done = subprocess.run(["xdotool", *map(str, words)], env=self.environment, check=check, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return done.stdout

    # The picture on the screen.

    def rows(self, left, top, width, height):
        """The bytes of a part of the screen, row by row; four to a pixel: blue, green, red, nothing."""
        dump = self.frame_buffer.read_bytes()
        header = self.HEADER.unpack_from(dump)
        assert header[self.BYTES_PER_PIXEL_BITS] == 32
        start = header[self.HEADER_SIZE] + header[self.COLORS] * self.COLOR_ENTRY
        line = header[self.BYTES_PER_LINE]
        return [dump[start + y * line + 4 * left:start + y * line + 4 * (left + width)]
                for y in range(top, top + height)]

    def pixel(self, x, y):
        """Red, green, blue."""
        blue, green, red, _ = self.rows(x, y, 1, 1)[0]
        return red, green, blue

    def share(self, color, area):
        """The part of an area, 0 to 1, that has a colour."""
        red, green, blue = color
        has_color = sum(row[i:i + 3] == bytes((blue, green, red)) for row in self.rows(*area)
                        for i in range(0, len(row), 4))
        return has_color / (area[2] * area[3])

    def changed_picture(self, area, before):
        """Waits until an area shows something else than before, and has come to rest."""
        state = {"picture": None, "looks": 0}

        def look():
            picture = self.rows(*area)
            state["looks"] = state["looks"] + 1 if picture == state["picture"] else 0
            state["picture"] = picture
            return picture if state["looks"] >= STEADY and picture != before else None

        return wait_for("a new picture", look)

    def wait_for_picture(self, area, expected):
        wait_for("the expected picture", lambda: self.rows(*area) == expected)
