"""The job's command file under Wine's cmd, and its task.

Wine's cmd drops a "%" from the text of a variable, so only the name of a swept file has one here.
"""

import shutil
import subprocess
import xml.etree.ElementTree
from pathlib import Path

import pytest
from conftest import ROOT, SWEPT, X, held_open, make, tree

FOLDER = SWEPT / "job (x86) & more !now!"
NAME = r"X:\test\swept\job (x86) & more !now!"
LOG = FOLDER / "new logs/clean.log"
REPORT = FOLDER / "new logs/clean.log.report"


def wine(*command: str) -> int:
    return subprocess.run(
        ["wine", *command], cwd=X, timeout=60, stdin=subprocess.DEVNULL
    ).returncode


def run_job(*arguments: str, folder: str = "job") -> int:
    return wine(rf"{NAME}\suite\{folder}\clean.cmd", *arguments)


@pytest.fixture(autouse=True)
def job(program: Path) -> None:
    """An installation with the command file in both of its places, and an old file."""
    text = (ROOT / "job/clean_old_files.cmd").read_bytes().decode()
    default = r"%LOCALAPPDATA%\kxDeleteOldFiles\clean_old_files.log"
    text = text.replace(default, rf"{NAME}\new logs\clean.log")
    text = text.replace("\nset arguments=", f'\nset arguments=-do 14 "{NAME}\\old jobs"')
    make("suite/sub/cfg_global/x", "old jobs/100% of 5% !x!.log", folder=FOLDER)
    for folder in ("suite/bin/win64", "suite/job"):
        (FOLDER / folder).mkdir(parents=True)
        (FOLDER / folder / "clean.cmd").write_bytes(text.encode())
    shutil.copy(program, FOLDER / "suite/bin/win64/kxDeleteOldFiles.exe")


def test_runs_the_program_beside_it_and_makes_the_log_and_its_folder() -> None:
    assert run_job(folder=r"bin\win64") == 0
    assert tree(FOLDER / "old jobs") == []
    assert tree(LOG.parent) == [LOG.name]
    command = rf'"{NAME}\suite\bin\win64\kxDeleteOldFiles.exe" -do 14 "{NAME}\old jobs"'
    assert f"{command}\n.---" in LOG.read_text()


def test_takes_arguments_and_logs_names_unchanged() -> None:
    assert run_job("-do", "7", rf"{NAME}\old jobs", "-v") == 0
    assert "     -del 100% of 5% !x!.log\n" in LOG.read_text()


def test_ends_with_2_only_when_the_report_of_this_run_has_errors() -> None:
    make("plan ", folder=FOLDER / "old jobs/5% !x!")  # Windows cannot name it, so its folder stays
    assert run_job() == 2
    shutil.rmtree(FOLDER / "old jobs/5% !x!")
    REPORT.write_text("Errors:")  # of a run that was killed
    assert run_job() == 0
    assert LOG.read_text().count("Errors:") == 1
    assert LOG.read_text().count(" files deleted") == 2
    assert LOG.with_suffix(".log.killed").read_text() == "Errors:"


def test_ends_with_the_exit_code_of_the_program() -> None:
    assert run_job("-v") == 255
    assert run_job("-do", "week", rf"{NAME}\old jobs") == 3


def test_ends_with_1_when_there_is_no_program() -> None:
    shutil.rmtree(FOLDER / "suite/bin")
    assert run_job() == 1
    assert "No program: neither" in LOG.read_text()


def test_ends_with_4_and_deletes_nothing_when_the_log_cannot_be_made() -> None:
    make(str(LOG.parent))
    assert run_job() == 4
    assert tree(FOLDER / "old jobs") == ["100% of 5% !x!.log"]


@pytest.mark.parametrize("held", [REPORT, LOG], ids=["by another run", "by a program"])
def test_ends_with_4_and_deletes_nothing_while_the_log_is_held(held: Path) -> None:
    make(str(held))
    with held_open(held):
        assert run_job() == 4
    assert tree(FOLDER / "old jobs") == ["100% of 5% !x!.log"]


@pytest.mark.parametrize(("end", "code"), [("</Task>", 0), ("</Tusk>", 1)], ids=["task", "broken"])
def test_schtasks_takes_the_task_and_refuses_a_broken_one(end: str, code: int) -> None:
    text = (ROOT / "job/clean_old_files.xml").read_bytes().decode("utf-16")
    (SWEPT / "task.xml").write_bytes(text.replace("</Task>", end).encode("utf-16"))
    assert wine("schtasks", "/create", "/tn", "kx", "/xml", r"X:\test\swept\task.xml") == code
    assert wine("schtasks", "/delete", "/tn", "kx", "/f") == code


def test_the_task_runs_nightly_makes_up_for_missed_runs_and_runs_on_battery_too() -> None:
    task = xml.etree.ElementTree.parse(ROOT / "job/clean_old_files.xml").getroot()
    assert task.findtext(".//{*}StartBoundary").endswith("T03:00:00")
    assert task.findtext(".//{*}DaysInterval") == "1"
    assert task.findtext(".//{*}Command").endswith(r"\clean_old_files.cmd")
    (settings,) = task.findall("{*}Settings")
    assert {leaf.tag.rpartition("}")[2]: leaf.text for leaf in settings} == {
        "StartWhenAvailable": "true",
        "DisallowStartIfOnBatteries": "false",
        "StopIfGoingOnBatteries": "false",
        "ExecutionTimeLimit": "PT0S",
        "MultipleInstancesPolicy": "IgnoreNew",
    }
