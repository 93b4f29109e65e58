"""What the program makes of its arguments: usage, options, folders with a star, free space."""

import os
import re
import subprocess
from pathlib import Path

import pytest
from conftest import INSTALLED, X, make, run, start, tree


def report(folder: str, deleted: int, kib: int = 0, days: int = 14, first: bool = True) -> str:
    """The report on a folder. Only the first one of a run has the line of progress."""
    progress = f"     ...{folder}...\n" if first else ""
    return f"""
Starting to delete files in folder '{folder}', File have to be older than {days} days.
{progress}  {deleted} files deleted ({kib} Kib). \n
  Done. Free drive space in {folder} is # MiB\n
"""


@pytest.mark.parametrize("arguments", [[], [r"X:\test\swept"], [r"X:\test\swept", "-v"]])
def test_shows_its_usage_for_fewer_than_three_arguments(arguments: list[str]) -> None:
    make("old")
    assert run(*arguments) == (Path(__file__).with_name("usage.txt").read_text(), 255)
    assert tree() == ["old"]


@pytest.mark.parametrize(
    ("option", "value", "days", "deleted"),
    [
        ("-DO", "40", 40, 0),
        ("-do", "7", 7, 1),
        ("-do", " +0 ", 0, 2),
        ("-do", "-5", -5, 2),
        ("-do", "24855", 24855, 0),  # the largest limit
        ("-do", "24856", 24856, 2),  # overflows 32 bits as seconds
    ],
)
def test_reads_the_age_limit(option: str, value: str, days: int, deleted: int) -> None:
    make("future", days=-10)
    make("old", size=1536)
    expected = report(r"X:\test\swept", deleted, 2 if deleted else 0, days)
    assert run(r"X:\test\swept", option, value) == (expected, 0)
    assert tree() == ["future", "old"][: 2 - deleted]


# "…" arrives as byte 0x85 of code page 1252. As Latin-1 that is U+0085, white space to QtCore 5.
@pytest.mark.parametrize("value", ["7%d", "2147483648", "14…", "…14"])
def test_refuses_a_limit_that_is_no_number(value: str) -> None:
    make("old")
    shown = value.replace("…", "\x85")
    expected = f"Error: Unable to convert {shown} into a number!\n"
    assert run(r"X:\test\swept", "-do", value) == (expected, 3)
    assert tree() == ["old"]


@pytest.mark.parametrize("directory", [r"X:\test\swept\file", "C:", "%s%n"])
def test_warns_of_a_missing_directory(directory: str) -> None:
    make("file")
    assert run("-v", "-v", directory) == (f"Warning: directory {directory} does not exist!\n", 0)


def test_runs_folders_of_two_stars_depth_first() -> None:
    make("a/x/old", "a/y/old", "b/x/old", "a/file", "a/s*r/old")
    reports = report("X:\\test\\swept\\a\\x\\", 1)
    reports += report("X:\\test\\swept\\a\\y\\", 1, first=False)
    reports += report("X:\\test\\swept\\b\\x\\", 1, first=False)
    found = run("-do", "14", "X:\\test\\S*\\*\\*\\")
    assert found == ("Searching for folders matching 'X:\\test\\S*\\*\\*\\'." + reports, 0)
    assert tree() == ["a", "a/file", "a/s*r", "a/s*r/old", "a/x", "a/y", "b", "b/x"]


def test_prints_no_more_for_a_star_without_a_match() -> None:
    expected = r"Searching for folders matching 'X:\none%s%n\*'."
    assert run("-do", "14", r"X:\none%s%n\*") == (expected, 0)


@pytest.mark.parametrize(
    ("directory", "mib"),
    [
        ("X:\\", "#"),
        ("X:/test/swept", "#"),
        ("test\\swept\\", "#"),
        (rf"\\server\{'s' * 244}\swept", "#"),  # the root has 254 units
        (rf"\\server\{'s' * 245}\swept", "1000"),  # 255
        (r"\\server\share", "1000"),  # from here on without a root
        (r"test\swept", "1000"),
        ("//server/share", "1000"),
    ],
)
def test_tells_the_free_space_of_a_root(directory: str, mib: str) -> None:
    for units in (244, 245):
        share = Path(os.environ["WINEPREFIX"], "dosdevices/unc/server", "s" * units)
        share.unlink(missing_ok=True)
        share.symlink_to(X / "test")
    assert run("-do", "24855", directory).output.endswith(f"in {directory} is {mib} MiB\n\n")


def test_tells_the_free_space_of_the_disk() -> None:
    output = start(r"X:\test\swept", "-do", "14").stdout.read().decode()
    shown = int(re.findall(r"is ([\d ]+) MiB", output)[0].replace(" ", ""))
    disk = os.statvfs(X)
    assert shown == pytest.approx(disk.f_bavail * disk.f_frsize >> 20, abs=2000)


def test_tells_windows_to_show_no_dialogs_before_it_prints() -> None:
    traced = os.environ | {"WINEDEBUG": "+relay"}
    calls = subprocess.run(["wine", INSTALLED], cwd=X, env=traced, capture_output=True).stderr
    before, print_call, _ = calls.partition(b"Call ucrtbase.__stdio_common_vfprintf(")
    assert print_call
    assert b"Call KERNEL32.SetErrorMode(00008001)" in before
