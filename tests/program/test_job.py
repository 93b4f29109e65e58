"""The job's command file under Wine's cmd, and its task.

Wine's cmd drops a "%" from the text of a variable, so only the name of a swept file has one."""

import shutil
import subprocess
from pathlib import Path

import pytest
from conftest import ROOT, SWEPT, TOOL, X, make, tree

FOLDER = SWEPT / "job (x86) & more !now!"
NAME = r"X:\test\swept\job (x86) & more !now!"
OLD = "100% of 5% !x!.log"
LOG = FOLDER / "new logs/clean.log"
REPORT = FOLDER / "new logs/clean.log.report"


def wine(*command: str) -> int:
    return subprocess.run(["wine", *command], cwd=X, stdin=subprocess.DEVNULL, timeout=60).returncode


def run_job(*arguments: str, folder: str = "job") -> int:
    return wine(rf"{NAME}\suite\{folder}\clean.cmd", *arguments)


@pytest.fixture(autouse=True)
def job(program: Path) -> None:
    """An installation with the command file in both of its places, and an old file."""
    text = (ROOT / "job/clean_old_files.cmd").read_bytes().decode()
    text = text.replace(rf"%LOCALAPPDATA%\{TOOL}\clean_old_files", rf"{NAME}\new logs\clean")
    text = text.replace("\nset arguments=", f'\nset arguments=-v -do 14 "{NAME}\\old jobs"')
    make("suite/job/clean.cmd", "suite/bin/win64/clean.cmd", content=text.encode(), folder=FOLDER)
    make(f"suite/bin/win64/{TOOL}.exe", content=program.read_bytes(), folder=FOLDER)
    make("suite/sub/cfg_global/x", f"old jobs/{OLD}", folder=FOLDER)


def test_logs_its_command_and_the_report() -> None:
    assert run_job() == 0
    assert tree(LOG.parent) == [LOG.name]
    command = rf'win64\kxDeleteOldFiles.exe" -v -do 14 "{NAME}\old jobs"'
    assert f"{command}\n.---" in LOG.read_text()
    assert f"     -del {OLD}\n" in LOG.read_text()


def test_ends_with_2_only_when_the_report_of_this_run_has_errors() -> None:
    make("plan ", folder=FOLDER / "old jobs/5% !x!")  # Windows cannot name it, so its folder stays
    assert run_job() == 2
    shutil.rmtree(FOLDER / "old jobs/5% !x!")
    REPORT.write_text("Errors:")  # of a run that was killed
    assert run_job() == 0
    assert LOG.read_text().count("Errors:") == 1
    assert LOG.with_suffix(".log.killed").read_text() == "Errors:"


def test_takes_arguments_and_ends_with_the_exit_code_of_the_program() -> None:
    assert run_job("-v") == 255
    assert run_job("-do", "week", rf"{NAME}\old jobs", folder=r"bin\win64") == 3


def test_ends_with_1_when_there_is_no_program() -> None:
    (FOLDER / f"suite/bin/win64/{TOOL}.exe").unlink()
    assert run_job() == 1
    assert "No program: neither" in LOG.read_text()


@pytest.mark.parametrize("held", [REPORT, LOG], ids=["by another run", "by a program"])
def test_ends_with_4_and_deletes_nothing_while_the_log_is_held(held: Path) -> None:
    make(str(held))
    pause = ["wine", "cmd", "/c", "pause", f"2>>{held.name}"]
    pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE}
    with subprocess.Popen(pause, cwd=held.parent, **pipes) as holder:
        assert holder.stdout.read(1)
        assert run_job() == 4
    assert tree(FOLDER / "old jobs") == [OLD]


def test_schtasks_takes_the_task() -> None:
    shutil.copy(ROOT / "job/clean_old_files.xml", X)
    assert wine("schtasks", "/create", "/tn", "kx", "/xml", r"X:\clean_old_files.xml") == 0
    assert wine("schtasks", "/delete", "/tn", "kx", "/f") == 0
