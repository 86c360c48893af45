"""What tests of the command's windows share: a screen and folders of their own."""

import sys
import tempfile
import unittest
from pathlib import Path

from x_server import XServer

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
import keldll_command  # noqa: E402


def keldll():
    return str(keldll_command.keldll)


class ScreenCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.screen = XServer(self.folder)
        self.addCleanup(self.screen.close)
        self.environment = {**self.screen.environment, "KELDLL_HOME": str(self.folder / "home"),
                            "XDG_CONFIG_HOME": str(self.folder / "config"), "XDG_RUNTIME_DIR": str(self.folder)}

    def end(self, process):
        if process.poll() is None:
            process.kill()
        process.communicate()
