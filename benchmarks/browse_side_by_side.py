#!/usr/bin/env python3
"""The list window beside DB Browser for SQLite over the same tables, as a person sees both: from a click or a key
to the rows painted on the screen of an X server. Needs sqlitebrowser, xdotool and Xvfb.

    benchmarks/browse_side_by_side.py --keldll PATH [--rows 10000 1000000 10000000] [--runs 3] [--tables FOLDER]
                                      [--pictures FOLDER]

Prints medians and their ratios. --tables keeps the tables in a folder for the next time; --pictures leaves there what
was on the screen after each step, so that one can look whether the right things were measured.
"""

import argparse
import mmap
import os
import sqlite3
import statistics
import struct
import subprocess
import sys
import tempfile
import time
import zlib
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "screen"))
from x_server import XServer, wait_for  # noqa: E402

# The name comes first, so that its heading is easy to hit however wide the columns are.
SCHEMA = "CREATE TABLE entry(name TEXT, id INTEGER PRIMARY KEY, day DATE, amount DOUBLE, remarks TEXT)"
# Names begin with two letters of ten each, so "ab" begins one of a hundred. The same rows every time.
FILL = """
    WITH RECURSIVE number(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM number WHERE n < ?)
    INSERT INTO entry SELECT
        char(97 + a % 10, 97 + b % 10, 97 + a / 10 % 26, 97 + b / 10 % 26) || ' ' ||
        char(97 + a / 260 % 26, 97 + b / 260 % 26, 97 + a / 6760 % 26),
        n, date(2451545 + a % 9000), b % 10000000 / 100.0, 'being amount no. ' || (a % 1000000)
    FROM (SELECT n, n * 2654435761 % 4294967291 AS a, n * 2246822519 % 4294967279 AS b FROM number)"""
PREFIX = "ab"

POLL = 0.001  # seconds between two looks at the screen
REST = 1.0  # seconds without a new picture and without work, after which a step is over
TICKS_AT_REST = 4  # of processor time within REST; a cursor blinks
AT_MOST = 300  # seconds for a step

STEPS = ("start", "sort", "filter")


def make_table(path, rows):
    print(f"browse: making {path} of {rows} rows", file=sys.stderr)
    unfinished = path.with_suffix(".part")
    unfinished.unlink(missing_ok=True)
    with sqlite3.connect(unfinished) as connection:
        connection.execute("PRAGMA journal_mode = OFF")
        connection.execute("PRAGMA synchronous = OFF")
        connection.execute(SCHEMA)
        connection.execute(FILL, (rows,))
    connection.close()
    unfinished.rename(path)


class Screen(XServer):
    """Looks at parts of the screen without asking the server, and so without taking time from what it watches."""

    def __init__(self, folder):
        super().__init__(folder)
        with wait_for("the picture", self.frame_buffer.is_file) and open(self.frame_buffer, "rb") as file:
            self.picture = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        header = self.HEADER.unpack_from(self.picture)
        self.start = header[self.HEADER_SIZE] + header[self.COLORS] * self.COLOR_ENTRY
        self.line = header[self.BYTES_PER_LINE]
        # One that is running already: starting it would be part of the time.
        self.hands = subprocess.Popen(["xdotool", "-"], env=self.environment, stdin=subprocess.PIPE)

    def close(self):
        self.hands.stdin.close()
        self.hands.wait()
        super().close()

    def do(self, command):
        self.hands.stdin.write(f"{command}\n".encode())
        self.hands.stdin.flush()

    def lines(self, area):
        left, top, width, height = area
        for y in range(top, top + height):
            start = self.start + y * self.line + 4 * left
            yield self.picture[start:start + 4 * width]

    def look(self, area):
        return zlib.crc32(b"".join(self.lines(area)))

    def save(self, path):
        def chunk(kind, data):
            return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

        raw = bytearray()
        for line in self.lines((0, 0, self.WIDTH, self.HEIGHT)):
            rgb = bytearray(3 * self.WIDTH)
            rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
            raw += b"\0" + rgb
        path.write_bytes(b"\x89PNG\r\n\x1a\n" +
                         chunk(b"IHDR", struct.pack(">IIBBBBB", self.WIDTH, self.HEIGHT, 8, 2, 0, 0, 0)) +
                         chunk(b"IDAT", zlib.compress(bytes(raw), 1)) + chunk(b"IEND", b""))


class Program:
    """A program that shows the table. Places are pixels; windows stand at the screen's left top corner."""

    name = title = None
    rows = None  # an area with cells of the first rows, without the heading: the mouse stands there
    count = None  # an area with the number of rows
    heading = None  # the point of a click that sorts by name

    def __init__(self, screen, folder, table):
        self.screen = screen
        self.environment = {
            **screen.environment, "HOME": str(folder), "XDG_CONFIG_HOME": str(folder / "config"),
            "KELDLL_HOME": str(folder / "home"), "XDG_RUNTIME_DIR": str(folder)}
        self.table = table
        self.process = None

    def close(self):
        if self.process:
            self.process.kill()
            self.process.wait()

    def start(self):
        self.process = subprocess.Popen(self.command(), env=self.environment, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def sort(self):
        self.screen.do("click 1")

    def filter(self):
        self.screen.do("key Return")

    def prepare_start(self):
        pass

    def prepare_sort(self):
        self.screen.focus(self.window())
        self.screen.xdotool("mousemove", *self.heading)

    def window(self):
        return wait_for(f"the window of {self.name}", lambda: self.screen.windows(self.title))[0]

    def ticks(self):
        fields = Path(f"/proc/{self.process.pid}/stat").read_text().rsplit(")", 1)[1].split()
        return int(fields[11]) + int(fields[12])

    def take(self, step):
        """Does a step; the result is how long it was until the rows, and the count, were as they stayed."""
        getattr(self, f"prepare_{step}")()
        areas = (self.rows, self.count)
        pictures = [[(0.0, self.screen.look(area))] for area in areas]
        begin = time.monotonic()
        getattr(self, step)()
        calm_since, ticks, now = 0.0, None, 0.0
        while now - calm_since < REST:
            time.sleep(POLL)
            now = time.monotonic() - begin
            for area, seen in zip(areas, pictures):
                picture = self.screen.look(area)
                if picture != seen[-1][1]:
                    seen.append((now, picture))
                    calm_since = now
            worked = self.ticks()
            if ticks is None or worked - ticks > TICKS_AT_REST:
                ticks, calm_since = worked, now
            if now > AT_MOST or self.process.poll() is not None:
                raise RuntimeError(f"{self.name}: {step} does not come to rest")
        rows, count = pictures
        if len(rows) == 1 or (step == "filter" and len(count) == 1):
            raise RuntimeError(f"{self.name}: {step} changed nothing on the screen")
        painted = next(when for when, picture in rows[1:] if picture == rows[-1][1])
        return {"rows": painted, "all": max(painted, count[-1][0])}


class ListWindow(Program):
    name, title = "keldll", "entry"
    rows, count, heading = (30, 78, 370, 415), (400, 4, 396, 30), (40, 46)
    keldll = None

    def command(self):
        return [self.keldll, "browse", "--db", str(self.table), "--sql", "SELECT * FROM entry"]

    def prepare_filter(self):
        window = self.window()
        self.screen.focus(window)
        self.screen.key("Menu")
        self.screen.key("e")
        self.screen.window("Filter")
        self.screen.key("Home", "Tab", "L", "Tab")
        self.screen.type(PREFIX + "*")


class DbBrowser(Program):
    name, title = "sqlitebrowser", "DB Browser for SQLite - "
    rows, count, heading = (96, 222, 280, 420), (58, 677, 118, 22), (120, 151)
    filter_line = (110, 175)

    def command(self):
        return ["sqlitebrowser", "-t", "entry", str(self.table)]

    def take(self, step):
        seconds = super().take(step)
        while self.asks():
            if step != "start":
                raise RuntimeError(f"{self.name} asks something at {step}")
            self.screen.key("Return")
            time.sleep(REST)
        return seconds

    def asks(self):
        """It may ask at the start, over rows that are painted, whether to break off reading; "No" is the default."""
        return len(self.screen.xdotool("search", "--onlyvisible", "--maxdepth", 1, "--class", ".").split()) > 1

    def prepare_filter(self):
        self.screen.focus(self.window())
        self.screen.click(*self.filter_line)
        self.screen.xdotool("type", "--delay", "1", PREFIX + "%")


def run(program_class, table, steps, pictures):
    """One life of a program: the seconds of every step."""
    seconds = {}
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        screen = Screen(folder)
        program = program_class(screen, folder, table)
        try:
            for step in steps:
                seconds[step] = program.take(step)
                if pictures:
                    screen.save(pictures / f"{program.name}-{table.stem}-{step}.png")
        finally:
            program.close()
            screen.close()
    return seconds


def median(runs, step, what):
    return statistics.median(seconds[step][what] for seconds in runs)


def tell(rows, ours, theirs):
    """Prints the medians of both programs over one table; the result is our time to the first rows."""
    for step, what, told in (("start", "rows", "start to the first rows"), ("sort", "rows", "sort to the new rows"),
                             ("sort", "all", "sort to rows and count"), ("filter", "rows", "filter to the new rows"),
                             ("filter", "all", "filter to rows and count")):
        mine, other = median(ours, step, what), median(theirs, step, what)
        print(f"browse: {rows} rows, {told} {mine:.3f} s, sqlitebrowser {other:.3f} s, "
              f"{other / mine:.1f} times as fast (at least 2)")
    return median(ours, "start", "rows")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--keldll", required=True)
    parser.add_argument("--rows", type=int, nargs="+", default=[10_000, 1_000_000, 10_000_000])
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--tables", type=Path)
    parser.add_argument("--pictures", type=Path)
    arguments = parser.parse_args()
    ListWindow.keldll = os.path.abspath(arguments.keldll)
    for folder in (arguments.tables, arguments.pictures):
        if folder:
            folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=arguments.tables or "/dev/shm") as temporary:
        tables = {rows: (arguments.tables or Path(temporary)) / f"entry-{rows}.db" for rows in arguments.rows}
        for rows, table in tables.items():
            if not table.exists():
                make_table(table, rows)
        seconds = {rows: ([], []) for rows in tables}
        for _ in range(arguments.runs):  # all in turn: other work on the machine hits them alike
            for rows, table in tables.items():
                for program, runs in zip((ListWindow, DbBrowser), seconds[rows]):
                    runs.append(run(program, table, STEPS, arguments.pictures))
    starts = {rows: tell(rows, *seconds[rows]) for rows in tables}
    least, most = min(starts), max(starts)
    print(f"browse: the first of {most} rows come {starts[most] / starts[least]:.2f} times as late as those of "
          f"{least} (at most 1.3)")


if __name__ == "__main__":
    main()
