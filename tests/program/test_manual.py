"""The manual's samples and tables of commands, run on the folders that they speak of."""

import re
import shutil
from collections.abc import Iterator
from pathlib import Path

import pytest
from conftest import C, ROOT, TOOL, X, make, rows, run, text, words

TEXT = (ROOT / "docs/manual.md").read_text()
SAMPLES = re.findall(r"^```console\n((?:.*\n)*?)```$", TEXT, re.MULTILINE)
MISTAKES = rows(TEXT.split("# Mistakes on the command line\n")[1])
SAMPLES += ("> {}\n{}\n".format(*(cell.strip("`") for cell in row)) for row in MISTAKES)


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


def printed(command: str, folder: str = "C:\\") -> str:
    """What a command prints when it is started in this folder."""
    program, *arguments = words(command)
    program = rf"C:\suite\bin\win64\{TOOL}.exe" if program == TOOL else program
    output = run(*arguments, program=program, cwd=C / folder[3:]).output
    return output.replace("is # MiB", "is 79 174 MiB").rstrip("\n")


@pytest.mark.parametrize("sample", SAMPLES)
def test_a_sample_shows_what_its_commands_print(sample: str) -> None:
    commands = re.findall(r"^> (.*)$", sample, re.MULTILINE)
    assert sample == "".join(f"> {command}\n{printed(command)}\n" for command in commands)


@pytest.mark.parametrize("directory, folders", rows(TEXT.split("# Folders with a star\n")[1]))
def test_a_star_runs_its_folders(directory: str, folders: str) -> None:
    directory, *started_in = re.findall("`(.*?)`", directory)
    found = re.findall(r"in folder '(.*)', File", printed(f"{TOOL} -do 14 {directory}", *started_in))
    assert folders.split(" (")[0] == (", ".join(f"`{folder}`" for folder in found) or "none")
