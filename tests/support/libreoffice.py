"""LibreOffice, which reads the documents and sheets that the command writes as an office program does."""

import subprocess
from pathlib import Path


def run(file, target, folder):
    """The profile is a folder of its own beside what is made, so that neither the user's settings nor a running office play a part."""
    profile = (Path(folder) / "office-profile").resolve()
    return subprocess.run(
        ["soffice", "--headless", "--norestore", f"-env:UserInstallation={profile.as_uri()}", "--convert-to", target, "--outdir", folder, file],
        capture_output=True, text=True, timeout=300)


def convert(file, target, folder):
    """Converts a file to `target` ("pdf", "csv:...", "xlsx") into `folder`; the path of the new file."""
    folder = Path(folder)
    done = run(file, target, folder)
    made = folder / f"{Path(file).stem}.{target.split(':')[0]}"
    if done.returncode != 0 or not made.is_file():
        raise RuntimeError(f"LibreOffice made no {made}: {done.stdout} {done.stderr}")
    return made


def sheets(workbook, folder):
    """The sheets of a workbook by their names: each a list of rows, with the text of every cell as it is shown."""
    import csv

    shown = "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true,true,false,false,-1"  # in UTF-8, each sheet in a file of its own
    made = Path(folder) / f"{Path(workbook).stem}-sheets"
    done = run(workbook, shown, made)
    files = sorted(made.glob("*.csv"), key=lambda file: (len(file.name), file.name))
    if done.returncode != 0 or not files:
        raise RuntimeError(f"LibreOffice read no sheet of {workbook}: {done.stdout} {done.stderr}")
    rows = {}
    for file in files:
        with open(file, newline="", encoding="utf-8") as table:
            rows[file.stem.removeprefix(f"{Path(workbook).stem}-")] = list(csv.reader(table))
        file.unlink()
    return rows


def words(pdf):
    """The words of a PDF file, page by page: each a tuple (left, top, right, bottom, text) in points."""
    import xml.etree.ElementTree as xml

    page_tag, word_tag = "{http://www.w3.org/1999/xhtml}page", "{http://www.w3.org/1999/xhtml}word"
    text = subprocess.run(["pdftotext", "-bbox", pdf, "-"], capture_output=True, check=True).stdout
    places = ("xMin", "yMin", "xMax", "yMax")
    return [[(*(float(word.get(place)) for place in places), word.text) for word in page.iter(word_tag)]
            for page in xml.fromstring(text).iter(page_tag)]
