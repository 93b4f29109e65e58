"""How the program reads its arguments. The manual's mistakes and stars are in test_manual.py."""

from pathlib import Path

import pytest
from conftest import INSTALLED, LOST, PREFIX, X, YOUNG, make, run, tree

NO_ROOT = "[KX_ROOT_INSTALLER: : invalid]\n[appPath: : invalid]\n[KX_ROOT: : invalid]"


def test_shows_its_usage_for_fewer_than_three_arguments() -> None:
    make("old")
    usage = Path(__file__).with_name("usage.txt").read_text()
    assert (run(r"X:\test\swept", "-v"), tree()) == ((usage, 255), ["old"])


@pytest.mark.parametrize("tool, arguments, end, code", [
    (INSTALLED, "-do 7%d", "Error: Unable to convert 7%d into a number!\n", 3),
    (INSTALLED, "-do 2147483648", "Error: Unable to convert 2147483648 into a number!\n", 3),
    # "…" arrives as byte 0x85 of code page 1252; as Latin-1, U+0085, white space to QtCore 5.
    (INSTALLED, "-do 14…", "Error: Unable to convert 14\x85 into a number!\n", 3),
    (INSTALLED, "-do …14", "Error: Unable to convert \x8514 into a number!\n", 3),
    (LOST, "-do week -kxroot a/ -KXROOTS &lt;ü", "<ü\\')\n\n[-kxRoot flag: a/<ü\\: invalid]\n", 1),
    # As a format, "%d" prints 0, "%s" "(null)", "%*d" takes two values, and "%n" ends the output.
    (LOST, "-kxRoot %%%*d%s", "'%0(null)\\')\n\n[-kxRoot flag: %0(null)\\: invalid]\n", 1),
    (LOST, "-kxRoot " + "%*d" * 100, f"[-kxRoot flag: {'0' * 100}\\: invalid]\n", 1),
    (LOST, "-kxRoot a%n", "lost.exe', 'a", 1),
])
def test_deletes_nothing_and_says_why(tool: str, arguments: str, end: str, code: int) -> None:
    make("old")
    found = run(r"X:\test\swept", *arguments.split(), program=tool)
    assert found.output.removesuffix(NO_ROOT).endswith(end)
    assert found.code == code
    assert tree() == ["old"]


@pytest.mark.parametrize("option, value, days, left", [
    ("-DO", "40", 40, ["future", "old"]),
    ("-do", " +0 ", 0, []),
    ("-do", "-5", -5, []),
    ("-do", "24855", 24855, ["future", "old"]),  # the largest limit
    ("-do", "24856", 24856, []),  # overflows 32 bits as seconds
])
def test_reads_the_age_limit(option: str, value: str, days: int, left: list[str]) -> None:
    make("future", days=-10)
    make("old")
    assert f"have to be older than {days} days.\n" in run(r"X:\test\swept", option, value).output
    assert tree() == left


@pytest.mark.parametrize("directory, mib", [
    ("X:\\", "#"),
    ("test\\swept\\", "#"),
    (rf"\\server\{'s' * 244}\swept", "#"),  # the root has 254 units
    (rf"\\server\{'s' * 245}\swept", "1000"),  # 255
    (r"\\server\share", "1000"),  # from here on without a root
    (r"test\swept", "1000"),
    ("//server/share", "1000"),
])
def test_tells_the_free_space_of_a_root(directory: str, mib: str) -> None:
    make("young", days=YOUNG)
    for units in (244, 245):
        share = PREFIX / "dosdevices/unc/server" / ("s" * units)
        share.unlink(missing_ok=True)
        share.symlink_to(X / "test")
    assert run("-do", "24855", directory).output.endswith(f"in {directory} is {mib} MiB\n\n")
