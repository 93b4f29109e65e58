"""Runs the program as its users do, in the sealed Wine prefix, and looks at what is left."""

import os
import re
import shutil
import subprocess
import time
from collections.abc import Iterator
from pathlib import Path
from typing import NamedTuple

import pytest

ROOT = Path(__file__).resolve().parents[2]
PREFIX = Path(os.environ["WINEPREFIX"]).resolve()
C = PREFIX / "drive_c"
X = (PREFIX / "dosdevices/x:").resolve()
SWEPT = X / "test/swept"  # empty at the start of each test
TOOL = "kxDeleteOldFiles"
INSTALLED = rf"X:\suite\bin\win64\{TOOL}.exe"
OLD, YOUNG = 30, 1  # days; the default limit is 14


def text(name: str) -> str:
    return Path(__file__).with_name(name).read_text()


def rows(table: str) -> list[list[str]]:
    """The cells of the first table in a text, without those of titles in bold."""
    lines = re.split(r"\n\|[-|]+\n", table)[1].split("\n\n")[0].splitlines()
    return [[cell.strip() for cell in line.split("|")[1:-1]] for line in lines if "**" not in line]


def words(command: str) -> list[str]:
    """The words of a command line, without quotation marks."""
    return [word.strip('"') for word in re.findall(r'"[^"]*"|\S+', command)]


VERSION = re.findall(r" VERSION (\S+) ", (ROOT / "CMakeLists.txt").read_text())[0]
BANNER = text("banner.txt").replace("@VERSION@", VERSION)


class Run(NamedTuple):
    output: str  # after the banner; "#" for the free MiB of the disk
    code: int


def make(*paths: str, days: float = OLD, content: bytes = b"", folder: Path = SWEPT) -> None:
    """Makes files of this age and content, empty folders ("name/"), and the folders above them."""
    for name in paths:
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        if name.endswith("/"):
            path.mkdir(exist_ok=True)
        else:
            path.write_bytes(content)
            os.utime(path, (time.time() - days * 86400,) * 2)


def tree(folder: Path = SWEPT) -> list[str]:
    """All files, links and folders below a folder."""
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*"))


def start(*arguments: str, program: str = INSTALLED, cwd: Path = X) -> subprocess.Popen[bytes]:
    """Starts the program. Signals reach the program itself."""
    return subprocess.Popen(["wine", program, *arguments], cwd=cwd, stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def finish(process: subprocess.Popen[bytes]) -> Run:
    """Waits for the program's end, and checks what all runs have in common."""
    output, errors = (stream.decode("latin1") for stream in process.communicate(timeout=60))
    print(f"> {process.args!r}\n{output}(exit code {process.returncode}; left: {str(tree()):.2000})")
    assert not errors
    assert "\n" not in output.replace("\r\n", "")
    output = output.replace("\r\n", "\n")
    assert output.startswith(BANNER)
    free = os.statvfs(X).f_bavail * os.statvfs(X).f_frsize >> 20
    for shown in re.findall(r" is ((?:1000|\d{1,3})(?: \d{3})*) MiB\n\n", output):
        if shown != "1000" and abs(int(shown.replace(" ", "")) - free) < 1000:
            output = output.replace(f" is {shown} MiB", " is # MiB")
    return Run(output.removeprefix(BANNER), process.returncode)


def run(*arguments: str, program: str = INSTALLED, cwd: Path = X) -> Run:
    return finish(start(*arguments, program=program, cwd=cwd))


@pytest.fixture(scope="session", autouse=True)
def program() -> Path:
    """Installs the program, and copies it to where no installation is."""
    file = Path(os.environ.get("KX_PROGRAM", ROOT / "build/kxDeleteOldFiles.exe"))
    make("suite/sub/cfg_global/x", days=YOUNG, folder=X)
    make(f"suite/bin/win64/{TOOL}.exe", "lost.exe", content=file.read_bytes(), folder=X)
    return file


@pytest.fixture(autouse=True)
def canaries() -> Iterator[None]:
    """Old files where no rule reaches, and a young one that some tests make a link to."""
    for folder in (X / "test", X / "share"):
        shutil.rmtree(folder, ignore_errors=True)
    make("test/swept/", "share/", "test/swept canary", "test/other/canary", folder=X)
    make("young/canary", days=YOUNG, folder=X / "test")
    yield
    assert {"swept", "swept canary", "other/canary", "young/canary"} <= set(tree(X / "test"))
