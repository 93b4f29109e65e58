"""Faults around a sweep, each caused for real. ./dev stress repeats them."""

import contextlib
import os
import signal
import subprocess
import time

import pytest
from conftest import C, INSTALLED, PREFIX, ROOT, SWEPT, X, YOUNG, finish, make, run, start, tree

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


def test_a_tree_may_change_while_two_runs_sweep_it() -> None:
    make("a/young", days=YOUNG)
    end = time.monotonic() + float(os.environ.get("KX_RACE_SECONDS", "1"))
    while time.monotonic() < end:
        processes = [start(*COMMAND), start(*COMMAND)]
        while any(process.poll() is None for process in processes):
            with contextlib.suppress(OSError):  # the runs delete what the next step needs
                make("a/old", "b/file", "c/file/old")
                (SWEPT / "b/file").unlink()
                (SWEPT / "c/file").rename(SWEPT / "b/file")
        assert [finish(process).code for process in processes] == [0, 0]
    assert "a/young" in tree()


def test_a_link_out_of_the_wine_prefix_is_removed_before_a_program_starts() -> None:
    planted = C / f"planted {os.getpid()}"
    for link in (planted, PREFIX / "dosdevices/d:"):
        link.symlink_to(X / "test/young")
    subprocess.run([ROOT / "cmake/wine.sh", "sealed", "cmd", "/c", "exit"], cwd=X, check=True)
    links = {path.name: path.resolve() for path in PREFIX.rglob("*") if path.is_symlink()}
    planted.rmdir()  # the link has become a folder
    assert links == {"c:": C, "x:": X, "y:": ROOT / "build/demo", "share": X / "share"}
