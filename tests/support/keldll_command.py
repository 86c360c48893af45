"""The keldll command that a test program was started for, and how it is told which one."""

import argparse
import sys
import unittest
from pathlib import Path

keldll = None  # its path


def main(description):
    """Runs the test program's cases: PROGRAM --keldll PATH [unittest arguments]."""
    global keldll
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--keldll", metavar="PATH", type=Path, required=True, help="the command")
    options, rest = parser.parse_known_args()
    keldll = options.keldll.resolve(strict=True)
    unittest.main(argv=[sys.argv[0], *rest])
