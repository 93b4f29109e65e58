"""The batch files under Wine's cmd, and the task.

Wine's cmd drops a "%" from the text of a variable, so only the name of a swept file has one."""

import itertools
import os
import re
from pathlib import Path
from subprocess import PIPE, Popen
from xml.etree import ElementTree

import pytest
from conftest import ROOT, SWEPT, TOOL, X, make, rows, text, tree

FOLDER = SWEPT / "job (x86) & more !now!"
NAME = r"X:\test\swept\job (x86) & more !now!"
OLD = "100% of 5% !x!.log"
LOG = FOLDER / "new logs/clean.log"


def start(*commands: str) -> Popen[str]:
    """Starts a batch file of these lines."""
    make("start.cmd", content="".join(f"@{line}\r\n" for line in commands).encode(), folder=FOLDER)
    return Popen(["wine", "start.cmd"], cwd=FOLDER, encoding="latin1", stdin=PIPE, stdout=PIPE)


@pytest.fixture(autouse=True)
def job(program: Path) -> None:
    """An installation with the batch files in both of their places, and an old file."""
    clean = (ROOT / "job/clean_old_files.cmd").read_bytes().decode()
    clean = clean.replace(rf"%LOCALAPPDATA%\{TOOL}\clean_old_files", rf"{NAME}\new logs\clean")
    clean = clean.replace("\nset arguments=", f'\nset arguments=-v -do 14 "{NAME}\\old jobs"')
    for name, content in ("clean", clean.encode()), ("try_it", (ROOT / "job/try_it.cmd").read_bytes()):
        make(f"suite/job/{name}.cmd", f"suite/bin/win64/{name}.cmd", content=content, folder=FOLDER)
    make(f"suite/bin/win64/{TOOL}.exe", content=program.read_bytes(), folder=FOLDER)
    make("suite/sub/cfg_global/x", f"old jobs/{OLD}", "new temp Ł/", content=b"1", folder=FOLDER)
    make("9999999.log", content=bytes(9_999_999), folder=FOLDER)


def test_logs_its_command_and_the_report() -> None:
    assert start(r"suite\job\clean.cmd").wait(60) == 0
    assert f'win64\\{TOOL}.exe" -v -do 14 "{NAME}\\old jobs"\n.---' in LOG.read_text()
    assert f"     -del {OLD}\n" in LOG.read_text()
    assert LOG.read_text()[0].isdigit()  # the date
    assert LOG.read_text().endswith(" MiB\n\n")


@pytest.mark.parametrize("before, arguments, code, logged, files", rows(text("jobs.txt")))
def test_ends_with_a_code_and_logs_the_reason(
        before: str, arguments: str, code: str, logged: str, files: str) -> None:
    assert start(before, rf"suite\bin\win64\clean.cmd {arguments}").wait(60) == int(code)
    assert tree(LOG.parent) == files.split()
    found = " ".join(path.read_text()[:5000] for path in sorted(LOG.parent.glob("*")))
    assert logged in " ".join(found.split())
    assert tree(FOLDER / "old jobs") == [OLD]


def test_ends_with_4_and_runs_nothing_when_it_cannot_begin_its_report() -> None:
    script = FOLDER / "suite/job/clean.cmd"
    taken = b'\nmkdir "%report%"\r\nset code=\r\n'  # just before the program's start
    script.write_bytes(script.read_bytes().replace(b"\nset code=\r\n", taken))
    assert start(r"suite\job\clean.cmd").wait(60) == 4
    assert tree(FOLDER / "old jobs") == [OLD]


TASK = (ROOT / "job/clean_old_files.xml").read_text("utf-16")
COMMENT, PLAIN = TASK.split("-->\n")
SYSTEM, USERS, AT_LOGON = re.findall(r"(?:^ {11,}<.*\n)+", COMMENT, re.MULTILINE)
TWO_LINES = re.findall(r" *<LogonType>.*\n.*\n", PLAIN)[0]  # of "Principal"
PATH_ALONE = PLAIN.replace(*re.findall(r"<Arguments>.*", PLAIN + COMMENT))
BY_USERS = PLAIN.replace(TWO_LINES, USERS).replace("  </Triggers>", f"{AT_LOGON}  </Triggers>")
TASKS = [TASK, PLAIN.replace(TWO_LINES, SYSTEM), BY_USERS, PATH_ALONE]


@pytest.mark.parametrize("task", TASKS, ids=range(4))
def test_the_task_has_elements_and_values_of_the_schema_and_schtasks_takes_it(task: str) -> None:
    pattern = re.sub(r"(?m)^\[(.*)\]\n", r"(?:\1\n)?", text("task_elements.txt").split("\n\n", 1)[1])
    (X / "task.xml").write_text(task, "utf-16")
    elements = ElementTree.parse(X / "task.xml").iter()
    words = ([e.tag.split("}")[1], *e.attrib.values(), e.text or ""] for e in elements)
    found = "".join(" ".join(row).strip() + "\n" for row in words)
    assert re.fullmatch(pattern, found), found
    assert start(r"schtasks /create /f /tn kx /xml X:\task.xml").wait(60) == 0
    assert start("schtasks /delete /tn kx /f").wait(60) == 0


# Wine's PowerShell does nothing. The test makes the files old while the batch file waits for a key.
@pytest.mark.parametrize("before, old, verdict", rows(text("trials.txt")))
def test_a_trial_says_what_differs(before: str, old: str, verdict: str) -> None:
    with start(f'set "TEMP={NAME}"', before, r"suite\job\try_it.cmd") as process:
        output = "".join(itertools.takewhile(lambda line: "now cleans" not in line, process.stdout or ()))
        for path in FOLDER.glob("**/swept/old read-only.txt"):  # is read-only, and files to keep are there
            assert not path.stat().st_mode & 0o222 and [*path.parents[1].glob("keep*")]
        for path in FOLDER.glob(f"**/kx_try_*/**/{old}"):
            os.utime(path, (0, 0))
        output += process.communicate()[0]  # closes the input, which is as good as a key
    print(output)
    said = [line for line in output.splitlines() if line.startswith(("Differs: ", "The program works"))]
    assert " ".join(re.sub(r"Differs: (.*\\kx_try_\w+\\swept\\)?", "", line) for line in said) == verdict
    assert process.returncode == ("The program works" not in verdict)
    assert [*FOLDER.glob("**/kx_try*"), *FOLDER.glob("old jobs/*")] == [FOLDER / "old jobs" / OLD]
