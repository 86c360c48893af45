#!/usr/bin/env python3
"""Fails when a file of src/ includes what it may not know: a layer above its own, or Qt outside the windows."""

import pathlib
import re
import sys

# Each layer knows itself and those on the lines above it; layers on one line do not know each other.
LAYERS = [
    ["common"],
    ["controls"],
    ["data"],
    ["toolkit"],
    ["engine"],
    ["export", "setup", "listview"],
    ["preview"],
    ["platform"],
    ["typelib"],
]
RANK = {layer: rank for rank, line in enumerate(LAYERS) for layer in line}

INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)
QT_HEADER = re.compile(r"^(Q[A-Z]\w*|Qt\w*/.+)$")


def may_use_qt(path):
    return path.name.startswith("frm") or path.parts[0] == "controls" or path.parts[:2] == ("platform", "qt")


def includes_window(path, included):
    """Logic never includes a window; the hosts and other windows may."""
    return pathlib.PurePath(included).name.startswith("frm") and not may_use_qt(path)


def violations(src):
    for file in sorted(src.rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        path = file.relative_to(src)
        own = path.parts[0]
        if own not in RANK:
            yield f"{path}: the folder {own} has no place among the layers"
            continue
        for included in INCLUDE.findall(file.read_text(encoding="utf-8")):
            layer = included.split("/")[0]
            if QT_HEADER.match(included) and not may_use_qt(path):
                yield f"{path}: includes Qt ({included})"
            elif layer in RANK and layer != own and RANK[layer] >= RANK[own]:
                yield f"{path}: {own} may not know {layer} ({included})"
            elif includes_window(path, included):
                yield f"{path}: logic includes a window ({included})"


def main():
    src = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "src")
    found = list(violations(src))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
