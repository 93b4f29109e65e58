"""Faults around a sweep, each caused for real. ./dev stress repeats them."""

import contextlib
import os
import random
import shutil
import signal
import subprocess
import time
from collections.abc import Iterator

import pytest
from conftest import INSTALLED, OLD, SWEPT, X, YOUNG, finish, make, run, start, tree

COMMAND = ("-do", "14", r"X:\test\s*")
pytestmark = pytest.mark.usefixtures("link")


@contextlib.contextmanager
def stopped_in(folder: str, *arguments: str) -> Iterator[subprocess.Popen[bytes]]:
    """A run that is stopped while it deletes the files 1000 to 1499 of a folder."""
    make(*(f"{folder}/{number}" for number in range(1000, 1500)))
    process = start(*arguments)
    try:
        while (SWEPT / folder / "1000").exists() and process.poll() is None:
            pass
        process.send_signal(signal.SIGSTOP)
        os.waitid(os.P_PID, process.pid, os.WSTOPPED | os.WEXITED | os.WNOWAIT)
        assert (SWEPT / folder / "1499").exists(), "it was not stopped in time"
        yield process
    finally:
        process.kill()


def test_the_listing_decides_on_what_changes_later() -> None:
    with stopped_in("full", *COMMAND) as process:
        (SWEPT / "full/1499").unlink()
        make("full/1498", "full/another", days=YOUNG)
        process.send_signal(signal.SIGCONT)
        output = finish(process).output
    assert "\n  500 files deleted" in output
    assert "Error deleting folder X:\\test\\swept\\full:Error 145: Directory is not" in output
    assert tree() == ["full", "full/another", "link"]


def test_the_next_run_finishes_what_a_killed_one_began() -> None:
    with stopped_in("full", *COMMAND) as process:
        process.kill()
        assert process.stdout.read().endswith(b"\r\n     ...X:\\test\\swept...\r\n")
    assert run(*COMMAND).code == 0
    assert tree() == ["link"]


@pytest.mark.parametrize(("folder", "end"), [("b", b" not exist!\r\n"), ("b/in", b" MiB\r\n\r\n")])
def test_each_report_can_be_read_at_once(folder: str, end: bytes) -> None:
    for name in ("a/in", folder):
        (SWEPT / name).mkdir(parents=True)
    with stopped_in("c/in", "-do", "14", r"X:\test\swept\*\in") as process:
        process.kill()
        assert process.stdout.read().endswith(end)


@pytest.mark.parametrize("output", [">&-", ">/dev/full", "| true"])
def test_a_run_needs_no_place_to_print_to(output: str) -> None:
    make("a/old")
    shell = ["bash", "-o", "pipefail", "-c", f'wine "$@" {output}', "bash"]
    assert subprocess.run([*shell, INSTALLED, *COMMAND, "-v"], cwd=X, timeout=60).returncode == 0
    assert tree() == ["link"]


def change_something(chance: random.Random) -> None:
    """Makes, deletes, renames or replaces a file or a folder."""
    folder = SWEPT / f"f{chance.randrange(8)}"
    entry = folder / f"e{chance.randrange(8)}"
    with contextlib.suppress(OSError):
        match chance.randrange(5):
            case 0:
                shutil.rmtree(entry) if entry.is_dir() else entry.unlink()
            case 1:
                entry.rename(folder / f"e{chance.randrange(8)}")
            case 2:
                (entry / "in").mkdir(parents=True)
            case action:
                make(str(entry), days=OLD if action == 3 else YOUNG)


def test_a_tree_may_change_while_two_runs_sweep_it() -> None:
    make("f0/young", "f3/young", "f7/young", days=YOUNG)
    chance = random.Random(1)
    end = time.monotonic() + float(os.environ.get("KX_RACE_SECONDS", "1"))
    while time.monotonic() < end:
        processes = [start(*COMMAND), start(*COMMAND)]
        while any(process.poll() is None for process in processes):
            change_something(chance)
        for found in map(finish, processes):
            assert found.code == 0
            assert found.output.endswith("swept is # MiB\n\n")
    assert {"f0/young", "f3/young", "f7/young"} < set(tree())
