"""The layer check finds what it is there for, and finds nothing in this tree."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent


def check(src):
    return subprocess.run([sys.executable, ROOT / "scripts" / "check_layers.py", src], capture_output=True, text=True)


class CheckLayersTest(unittest.TestCase):
    def test_this_tree_is_clean(self):
        result = check(ROOT / "src")
        self.assertEqual((result.returncode, result.stdout), (0, ""), result.stderr)

    def test_each_kind_of_violation_is_named(self):
        cases = [
            ("common/a.h", '#include "data/driver.h"', "common may not know data"),
            ("engine/a.cpp", "#include <QString>", "includes Qt (QString)"),
            ("engine/a.cpp", "#  include <QtCore/qstring.h>", "includes Qt"),
            ("export/a.cpp", '#include "setup/decimals.h"', "export may not know setup"),
            ("preview/page.cpp", '#include "preview/frmPV.h"', "logic includes a window"),
            ("reports/a.cpp", "", "has no place"),
        ]
        for path, text, expected in cases:
            with self.subTest(path=path, text=text), tempfile.TemporaryDirectory() as folder:
                file = pathlib.Path(folder) / path
                file.parent.mkdir(parents=True)
                file.write_text(text + "\n")
                result = check(folder)
                self.assertEqual(result.returncode, 1)
                self.assertIn(expected, result.stdout)

    def test_what_is_allowed_passes(self):
        allowed = [
            ("preview/frmPV.cpp", '#include <QWidget>\n#include "preview/frmPV.h"\n#include "export/frmExport.h"'),
            ("platform/qt/qt_host.cpp", '#include <QSettings>\n#include "listview/frmListview.h"'),
            ("engine/CPrint.cpp", '#include "engine/CPrint.h"\n#include <string>\n#include "toolkit/CZURDLL.h"'),
        ]
        with tempfile.TemporaryDirectory() as folder:
            for path, text in allowed:
                file = pathlib.Path(folder) / path
                file.parent.mkdir(parents=True)
                file.write_text(text + "\n")
            self.assertEqual(check(folder).stdout, "")


if __name__ == "__main__":
    unittest.main()
