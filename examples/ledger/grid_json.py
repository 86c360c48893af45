"""A grid in the form that `keldll report FILE.json` reads."""

import json
import os
import sys

BOLD_ON, BOLD_OFF = "\x1bE", "\x1bF"


def bold_title(text):
    """A report title has no cells, so its bold is written as the printer codes themselves."""
    return BOLD_ON + text + BOLD_OFF


class Grid:
    def __init__(self, caption, titles, headings, widths, alignments):
        self._bold = []
        self._underlined = []
        self._rows = [headings]
        self._layout = {"Caption": caption, "ReportTitle": titles, "ColWidth": widths, "ColAlignment": alignments,
                        "FixedRows": 1}

    def add(self, *cells, bold=False, underlined=()):
        """Adds a row; `underlined` names its underlined columns."""
        row = len(self._rows)
        self._rows.append(list(cells))
        if bold:
            self._bold += [[row, column] for column, text in enumerate(cells) if text]
        self._underlined += [[row, column] for column in underlined]

    def write(self, path):
        """To a file that takes its name when it is whole, or to standard output for no path."""
        text = json.dumps({**self._layout, "TextMatrix": self._rows, "CellFontBold": self._bold,
                           "CellFontUnderline": self._underlined}, ensure_ascii=False, indent=1) + "\n"
        if path is None:
            sys.stdout.write(text)
            return
        unfinished = path.with_name(f".{path.name}.{os.getpid()}")
        try:
            unfinished.write_text(text, encoding="utf-8")
            os.replace(unfinished, path)
        finally:
            unfinished.unlink(missing_ok=True)
