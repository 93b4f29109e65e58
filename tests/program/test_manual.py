"""The manual's samples and tables of commands, run on the folders that they speak of."""

import re
import shutil
from collections.abc import Iterator
from pathlib import Path

import pytest
from conftest import C, ROOT, TOOL, X, make, run, text

TEXT = (ROOT / "docs/manual.md").read_text()
SAMPLES = re.findall(r"^```console\n((?:.*\n)*?)```$", TEXT, re.MULTILINE)


def rows(heading: str, pattern: str) -> list[tuple[str, ...]]:
    """What a pattern finds in the table of a section. Each row must fit, but titles in bold."""
    section = TEXT.split(f"# {heading}\n")[1].split("\n## ")[0]
    titles_and_rows = re.findall(r"^\| [^*].*", section, re.MULTILINE)
    found = re.findall(f"^{pattern}$", section, re.MULTILINE)
    assert 0 < len(found) == len(titles_and_rows) - 1, heading
    return found


MISTAKES = rows("Mistakes on the command line", r"\| `(.*)` \| `(.*)` \|")
STAR = r"\| `([^`]*)`(?:, started in `(.*)`)? \| (none|`.*?`)(?: \(.*)? \|"


@pytest.fixture(autouse=True)
def drive_c(program: Path) -> Iterator[None]:
    """Makes the folders of the manual on drive C:, and removes them afterwards."""
    before = {*C.iterdir(), *(C / "users").iterdir()}
    for line in text("manual_folders.txt").splitlines():
        days, kib, path = line.split(maxsplit=2)
        make(path, days=int(days), content=bytes(int(kib) << 10), folder=C)
    make(f"suite/bin/win64/{TOOL}.exe", f"tools/bin/{TOOL}.exe", content=program.read_bytes(), folder=C)
    make("share/x/", folder=X)
    yield
    for folder in {*C.iterdir(), *(C / "users").iterdir()} - before:
        shutil.rmtree(folder)


def printed(command: str, folder: str = "") -> str:
    """What a command prints when it is started in this folder."""
    program, *words = (word.strip('"') for word in re.findall(r'"[^"]*"|\S+', command))
    program = rf"C:\suite\bin\win64\{TOOL}.exe" if program == TOOL else program
    output = run(*words, program=program, cwd=C / folder[3:]).output
    return output.replace("is # MiB", "is 79 174 MiB").rstrip("\n")


@pytest.mark.parametrize("sample", SAMPLES + ["> %s\n%s\n" % mistake for mistake in MISTAKES])
def test_a_sample_shows_what_its_commands_print(sample: str) -> None:
    commands = re.findall(r"^> (.*)$", sample, re.MULTILINE)
    assert sample == "".join(f"> {command}\n{printed(command)}\n" for command in commands)


@pytest.mark.parametrize("directory, current, folders", rows("Folders with a star", STAR))
def test_a_star_runs_its_folders(directory: str, current: str, folders: str) -> None:
    found = re.findall(r"in folder '(.*)', File", printed(f"{TOOL} -do 14 {directory}", current))
    assert folders == (", ".join(f"`{folder}`" for folder in found) or "none")
