"""The installation that the program needs, and what it says where it finds none."""

import pytest
from conftest import LOST, SWEPT, X, held_open, make, run, tree


# The message is printed as a format: "%d" shows 0, "%s" "(null)", and "%*d" takes two values.
@pytest.mark.parametrize(
    ("arguments", "last_flag", "flags"),
    [
        (["-do", "abc"], "", ""),
        (["-kxroot", "a/", "-KXROOTS", "&lt;ü&#228;"], "<üä\\", "a/<üä\\"),
        (["-kxRoot", "a%%s%%%*d%s"], "a%s%0(null)\\", "a%s%0(null)\\"),
        (["-kxRoot", "%*d" * 100], "0" * 100 + "\\", "0" * 100 + "\\"),
    ],
)
def test_says_what_it_tried(
    arguments: list[str], last_flag: str, flags: str, monkeypatch: pytest.MonkeyPatch
) -> None:
    make("old")
    monkeypatch.setenv("KX_ROOT_INSTALLER", r"X:\no")
    monkeypatch.setenv("KX_ROOT", "X:/none")
    found = run(r"X:\test\swept", *arguments, program=LOST)
    expected = f"""\
Unable to get KX Root path; This executable was not started from a KX directory.

 (Tried: 'X:\\outside\\bin\\win64\\lost.exe', '{last_flag}')

[-kxRoot flag: {flags}: invalid]
[KX_ROOT_INSTALLER: X:\\no\\: invalid]
[appPath: X:\\outside\\: invalid]
[KX_ROOT: X:/none\\: invalid]"""
    assert found == (expected, 1)
    assert tree() == ["old"]


def test_goes_on_where_the_print_routine_refuses_its_message() -> None:
    found = run(r"X:\test\swept", "-kxRoot", "a%n", program=LOST)
    assert found.output.endswith("lost.exe', 'a")
    assert found.code == 1


def test_stops_at_a_relink_file_that_it_cannot_open() -> None:
    make("root/sub/cfg_global/relink_win.cfg")
    with held_open(SWEPT / "root/sub/cfg_global/relink_win.cfg"):
        found = run("-kxRoot", r"X:\test\swept\root", r"X:\test\swept", program=LOST)
    assert found.code == 1
    assert found.output.endswith("\n[appPath: X:\\test\\swept\\root\\]")
    assert "root/sub/cfg_global/relink_win.cfg" in tree()


def test_a_folder_is_no_relink_file() -> None:
    make("root/sub/cfg_global/relink_win.cfg/old")
    assert run("-kxRoot", r"X:\test\swept\root", r"X:\test\swept", program=LOST).code == 0


def test_finds_no_root_after_it_has_swept_it() -> None:
    make("outside/sub/cfg_global/globalconfig.ini", folder=X)
    assert run("-do", "14", r"X:\outside", program=LOST).code == 0
    assert run("-do", "14", r"X:\outside", program=LOST).code == 1
