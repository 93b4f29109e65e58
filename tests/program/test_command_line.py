"""How the program reads its arguments. The manual's mistakes and stars are in test_manual.py."""

import pytest
from conftest import INSTALLED, PREFIX, TOOL, Run, X, make, rows, run, text, tree, words

RECORDS = [record.split("\n", 1) for record in text("command_lines.txt").split("\n> ")[1:]]


@pytest.fixture(autouse=True)
def files() -> None:
    make("old")
    make("young", days=-10)


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
    if "\\swept" in directory and directory.startswith("\\"):
        share = PREFIX / "dosdevices/unc/server" / directory.split("\\")[3]
        share.unlink(missing_ok=True)
        share.symlink_to(X / "test")
    assert run("-do", "24855", directory) == report(directory, "24855", 0, free)
    assert tree() == ["old", "young"]
