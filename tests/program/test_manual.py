"""The manual's samples and tables of commands, run on the folders that they speak of.

With --write-manual, what the program prints is put into the manual instead.
"""

import re
import shutil
from collections.abc import Iterator
from pathlib import Path

import pytest
from conftest import C, ROOT, X, make, run

MANUAL = ROOT / "docs/manual.md"
TEXT = MANUAL.read_text()
SAMPLES = re.findall(r"^```console\n(?:.*\n)*?```$", TEXT, re.MULTILINE)
COMMANDS = re.findall(r"^\| `kxDeleteOldFiles .*` \| `.*` \|$", TEXT, re.MULTILINE)
DIRECTORIES = TEXT.partition("\n| directory | folders that are run |\n")[2].partition("\n\n")[0]
FOLDER_RUN = re.compile(r"in folder '(.*)', File have")


@pytest.fixture(autouse=True)
def drive_c(program: Path) -> Iterator[None]:
    """Makes the folders of the manual on drive C:, and removes them afterwards."""
    before = {*C.iterdir(), *(C / "users").iterdir()}
    make("suite/sub/cfg_global/x", "users/mia/Documents/old letter.txt", folder=C)
    make("temp/cache/a/old.exr", days=20, size=1500 * 1024, folder=C)
    make("temp/render.log", size=120 * 1024, folder=C)
    make("temp/new.txt", "temp/cache/keep.exr", "a/te/b/new", "a/b/c/d/new", days=13, folder=C)
    make("users/maria/AppData/Local/Temp/job.log", size=12 * 1024, folder=C)
    make("users/Max/AppData/Local/Temp/a/b/job.log", days=15, size=30 * 1024, folder=C)
    make("users/anna/AppData/Local/Temp/job.log", folder=C)
    make("exchange/from elsewhere/plan ", size=1024, folder=C)
    for folder in (C / "temp/empty", C / "empty", C / "cache", X / "share/x"):
        folder.mkdir()
    for folder in ("suite/bin/win64", "tools/bin"):
        (C / folder).mkdir(parents=True)
        shutil.copy(program, C / folder / "kxDeleteOldFiles.exe")
    yield
    for folder in {*C.iterdir(), *(C / "users").iterdir()} - before:
        shutil.rmtree(folder)


def printed(command: str, folder: str = "C:\\") -> str:
    """What a command prints when it is started in this folder."""
    program, *words = re.findall(r'"[^"]*"|\S+', command)
    if program == "kxDeleteOldFiles":
        program = r"C:\suite\bin\win64\kxDeleteOldFiles.exe"
    found = run(*(word.strip('"') for word in words), program=program, cwd=C / folder[3:])
    return found.output.replace("is # MiB", "is 79 174 MiB").rstrip("\n")


def check(shown: str, expected: str, config: pytest.Config) -> None:
    if config.getoption("write_manual"):
        MANUAL.write_text(MANUAL.read_text().replace(shown, expected))
    else:
        assert shown == expected


@pytest.mark.parametrize("sample", SAMPLES)
def test_sample(sample: str, pytestconfig: pytest.Config) -> None:
    commands = re.findall(r"^> (.*)$", sample, re.MULTILINE)
    runs = "".join(f"> {command}\n{printed(command)}\n" for command in commands)
    check(sample, f"```console\n{runs}```", pytestconfig)


@pytest.mark.parametrize("row", COMMANDS)
def test_message_of_a_command(row: str, pytestconfig: pytest.Config) -> None:
    command = row.split("`")[1]
    check(row, f"| `{command}` | `{printed(command)}` |", pytestconfig)


@pytest.mark.parametrize("row", re.findall(r"^\| `.*", DIRECTORIES, re.MULTILINE))
def test_folders_of_a_directory(row: str, pytestconfig: pytest.Config) -> None:
    first, second = row.split(" | ")
    directory, *folder = re.findall("`(.*?)`", first)
    runs = FOLDER_RUN.findall(printed(f"kxDeleteOldFiles -do 14 {directory}", *folder))
    names = ", ".join(f"`{name}`" for name in runs) or "none"
    remark = re.sub(r"^.*?( \(.*| \|)$", r"\1", second)
    check(row, f"{first} | {names}{remark}", pytestconfig)
