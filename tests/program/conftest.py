"""Runs the program as its users do, in the sealed Wine prefix, and looks at what is left.

Each test has an empty folder X:\\test\\swept. Around it lie canaries: old files that no rule
reaches, and a young one that some tests link to.
A failed test shows every command with its output, its exit code and what it left of the folder.
"""

import contextlib
import os
import re
import shutil
import signal
import subprocess
import time
from collections.abc import Iterator
from pathlib import Path
from typing import Any, NamedTuple

import pytest

ROOT = Path(__file__).parents[2]
C = Path(os.environ["WINEPREFIX"], "drive_c")
X = Path(os.environ["WINEPREFIX"], "dosdevices/x:").resolve()
SWEPT = X / "test/swept"
INSTALLED = r"X:\suite\bin\win64\kxDeleteOldFiles.exe"
LOST = r"X:\outside\bin\win64\lost.exe"  # the program, but no installation around it
OLD, YOUNG = 30, 1  # days; the default limit is 14
BANNER = f""".{"-" * 64}
. kxDeleteOldFiles  8.4.02
. Deletes old files and subfolders that are left empty.
.{"-" * 64}
"""
FREE_SPACE = re.compile(r"(  Done\. Free drive space in .* is )(?!1000 MiB)\d[\d ]*( MiB\n\n)")


class Run(NamedTuple):
    output: str  # after the banner; free MiB are "#", except for 1000, which means unknown
    code: int


def make(*paths: str, days: float = OLD, size: int = 0, folder: Path = SWEPT) -> None:
    """Makes files of this age and size, and the folders above them."""
    for path in (folder / name for name in paths):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(bytes(size))
        os.utime(path, (time.time() - days * 86400,) * 2)


def tree(folder: Path = SWEPT) -> list[str]:
    """All files, links and folders below a folder."""
    walk = os.walk(folder)
    paths = [Path(parent, name) for parent, folders, files in walk for name in folders + files]
    return sorted(str(path.relative_to(folder)) for path in paths)


def start(*arguments: str, program: str = INSTALLED, **options: Any) -> subprocess.Popen[bytes]:
    """Starts the program, and waits for its first output. Signals reach the program itself."""
    files = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
    options = {"cwd": X} | files | options
    process = subprocess.Popen(["wine", program, *arguments], **options)
    if process.stdout.peek(1) == b"":  # Wine fails to start a program once in 2000 times
        process = subprocess.Popen(process.args, **options)
    return process


def finish(process: subprocess.Popen[bytes]) -> Run:
    """Waits for the program's end, and checks what all runs have in common."""
    output, errors = (pipe.read().decode("latin1") for pipe in (process.stdout, process.stderr))
    code = process.wait(60)
    print(f"> {process.args}\n{output}(exit code {code}; left: {tree()})")
    assert errors == ""
    assert "\n" not in output.replace("\r\n", "")
    output = output.replace("\r\n", "\n")
    assert output.startswith(BANNER)
    return Run(FREE_SPACE.sub(r"\1#\2", output.removeprefix(BANNER)), code)


def run(*arguments: str, **options: Any) -> Run:
    return finish(start(*arguments, **options))


@contextlib.contextmanager
def held_open(path: Path) -> Iterator[None]:
    """Keeps a file on drive X: open without sharing it."""
    command = ["wine", "cscript", "//nologo", "hold_open.vbs", str(path.relative_to(X))]
    with subprocess.Popen(command, cwd=X, stdout=subprocess.PIPE) as holder:
        try:
            assert holder.stdout.readline() == b"held\r\n"
            holder.send_signal(signal.SIGSTOP)
            yield
        finally:
            holder.kill()


def pytest_addoption(parser: pytest.Parser) -> None:
    built = ROOT / "build/kxDeleteOldFiles.exe"
    parser.addoption("--program", type=Path, default=built, help="the program to test")
    parser.addoption("--write-manual", action="store_true", help="write the manual's samples anew")


@pytest.fixture(scope="session", autouse=True)
def program(pytestconfig: pytest.Config) -> Path:
    """Installs the program, and copies it to where no installation is."""
    file: Path = pytestconfig.getoption("program")
    for folder, name in (("suite", "kxDeleteOldFiles.exe"), ("outside", "lost.exe")):
        shutil.rmtree(X / folder, ignore_errors=True)
        (X / folder / "bin/win64").mkdir(parents=True)
        shutil.copy(file, X / folder / "bin/win64" / name)
    make("suite/sub/cfg_global/x", days=YOUNG, folder=X)
    shutil.copy(Path(__file__).with_name("hold_open.vbs"), X)
    return file


@pytest.fixture(autouse=True)
def canaries(monkeypatch: pytest.MonkeyPatch) -> Iterator[None]:
    """Old files where no rule reaches, and a young one that some tests make a link to."""
    for variable in ("KX_ROOT", "KX_ROOT_INSTALLER"):
        monkeypatch.delenv(variable, raising=False)
    for folder in (X / "test", X / "share"):
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
    SWEPT.mkdir()
    make("swept canary", "other/canary", folder=X / "test")
    make("young/canary", days=YOUNG, folder=X / "test")
    yield
    assert {"swept canary", "other/canary", "young/canary"} <= set(tree(X / "test"))


@pytest.fixture
def link() -> None:
    """A link in the swept folder, to the folder of the young canary."""
    (SWEPT / "link").symlink_to("../young")
