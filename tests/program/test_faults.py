"""Faults around a sweep, each caused for real. ./dev stress repeats them."""

import os
import signal
import subprocess

import pytest
from conftest import INSTALLED, SWEPT, X, YOUNG, finish, make, run, start, tree

COMMAND = ("-do", "14", r"X:\test\s*")


def stopped_in(folder: str, *arguments: str) -> subprocess.Popen[bytes]:
    """A run that is stopped while it deletes the files 1000 to 2999 of a folder."""
    make(*(f"{folder}/{number}" for number in range(1000, 3000)))
    process = start(*arguments)
    while (SWEPT / folder / "1000").exists():
        assert process.poll() is None
    process.send_signal(signal.SIGSTOP)
    os.waitid(os.P_PID, process.pid, os.WSTOPPED | os.WEXITED | os.WNOWAIT)
    if not (SWEPT / folder / "2999").exists():
        process.kill()
        pytest.fail("it was not stopped in time")
    return process


def test_the_listing_decides_on_what_changes_later() -> None:
    process = stopped_in("full", *COMMAND)
    (SWEPT / "full/2999").unlink()
    make("full/2998", "full/another", days=YOUNG)
    process.send_signal(signal.SIGCONT)
    output = finish(process).output
    assert "\n  2000 files deleted" in output
    assert "Error deleting folder X:\\test\\swept\\full:Error 145: Directory is not" in output
    assert tree() == ["full", "full/another"]


@pytest.mark.parametrize("folder, end", [("b", " not exist!\r\n"), ("b/in", " MiB\r\n\r\n"), ("", "...\r\n")])
def test_a_killed_run_has_printed_its_reports_and_the_next_goes_on(folder: str, end: str) -> None:
    if folder:
        make("a/in/", f"{folder}/")
    process = stopped_in("c/in", "-do", "14", r"X:\test\swept\*\in")
    process.kill()
    assert process.communicate()[0].decode().endswith(end)
    assert run(*COMMAND).code == 0
    assert tree() == []


@pytest.mark.parametrize("output", [">&-", ">/dev/full", "| true"])
def test_a_run_needs_no_place_to_print_to(output: str) -> None:
    make("a/old")
    shell = ["bash", "-o", "pipefail", "-c", f'wine "$@" {output}', "bash"]
    assert subprocess.run([*shell, INSTALLED, *COMMAND, "-v"], cwd=X, timeout=60).returncode == 0
    assert tree() == []
