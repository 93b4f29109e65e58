"""How the program reads its arguments, and the manual's samples and tables of commands."""

import re
import shutil
from collections.abc import Iterator
from pathlib import Path

import pytest
from conftest import C, INSTALLED, PREFIX, ROOT, TOOL, Run, X, make, rows, run, text, tree, words

RECORDS = [record.split("\n", 1) for record in text("command_lines.txt").split("\n> ")[1:]]
MANUAL = (ROOT / "docs/manual.md").read_text()
SAMPLES = re.findall(r"^```console\n((?:.*\n)*?)```$", MANUAL, re.MULTILINE)
for row in rows(MANUAL.split("# Mistakes on the command line\n")[1]):
    SAMPLES.append("> {}\n{}\n".format(*(cell.strip("`") for cell in row)))


@pytest.fixture(autouse=True)
def files(program: Path) -> Iterator[None]:
    """Makes two files to sweep, and on drive C: the manual's folders, which it removes afterwards."""
    before = {*C.iterdir(), *(C / "users").iterdir()}
    for line in text("manual_folders.txt").splitlines():
        days, kib, path = line.split(maxsplit=2)
        make(path, days=int(days), content=bytes(int(kib) << 10), folder=C)
    make(f"suite/bin/win64/{TOOL}.exe", f"tools/bin/{TOOL}.exe", content=program.read_bytes(), folder=C)
    make("share/x/", folder=X)
    make("old")
    make("young", days=-10)
    yield
    for folder in {*C.iterdir(), *(C / "users").iterdir()} - before:
        shutil.rmtree(folder)


def report(folder: str, days: str, count: int, free: str) -> Run:
    return Run(f"\nStarting to delete files in folder '{folder}', File have to be older than {days} days.\n"
               f"     ...{folder}...\n  {count} files deleted (0 Kib). \n\n"
               f"  Done. Free drive space in {folder} is {free} MiB\n\n", 0)


@pytest.mark.parametrize("command, expected", RECORDS, ids=[record[0] for record in RECORDS])
def test_does_what_the_record_of_a_command_line_says(command: str, expected: str) -> None:
    program, *arguments = words(command.split("  # ")[0])
    found = run(*arguments, program={TOOL: INSTALLED, "lost": r"X:\lost.exe"}[program])
    assert f"{found.output}(exit code {found.code})\n" == expected
    assert tree() == ["old", "young"]


@pytest.mark.parametrize("case, value, days, left", rows(text("days.txt")))
def test_takes_a_decimal_number_of_days(case: str, value: str, days: str, left: str) -> None:
    message = f"Error: Unable to convert {value} into a number!\n".replace("…", "\x85")
    expected = report(r"X:\test\swept", days, 2 - len(left.split()), "#") if days else (message, 3)
    assert run(r"X:\test\swept", "-DO", *words(value)) == expected
    assert tree() == left.split()


@pytest.mark.parametrize("case, free, directory", rows(text("free_space.txt")))
def test_reports_the_free_space_of_the_root_of_a_directory(case: str, free: str, directory: str) -> None:
    if directory.startswith("\\\\server\\ü"):
        share = PREFIX / "dosdevices/unc/server" / directory.split("\\")[3]
        share.symlink_to(X / "test")
    assert run("-do", "24855", directory) == report(directory, "24855", 0, free)


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


@pytest.mark.parametrize("directory, folders", rows(MANUAL.split("# Folders with a star\n")[1]))
def test_a_star_runs_its_folders(directory: str, folders: str) -> None:
    directory, *started_in = re.findall("`(.*?)`", directory)
    found = re.findall(r"in folder '(.*)', File", printed(f"{TOOL} -do 14 {directory}", *started_in))
    assert folders.split(" (")[0] == (", ".join(f"`{folder}`" for folder in found) or "none")
