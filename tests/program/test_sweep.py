"""What a sweep deletes, keeps and reports; names, paths and links of unusual shape."""

from pathlib import Path

import pytest
from conftest import SWEPT, X, YOUNG, make, run, tree


def test_deletes_what_is_old_and_reports_each_decision() -> None:
    make("%s 100%/%n/old", content=bytes(511))
    make("held/old", "ü/\ufeffЖ", content=bytes(512))
    make("held/Ā%s run.exe", content=(X / "lost.exe").read_bytes())  # the running program
    make("kept/old", days=14.001, content=bytes(1535))
    make("kept/young", days=13.999)
    make("kept/from 2400", days=-136_600)
    make("young/old", folder=X / "test")
    make("readonly", content=bytes(2_000_000))
    (SWEPT / "readonly").chmod(0o444)
    (SWEPT / "link").symlink_to("../young")
    make("current/")  # the current folder of the run
    arguments = ("-kxRoot", r"X:\suite", "X:\\test\\swept\\", "-v", "-V")
    found = run(*arguments, program=r"X:\test\swept\held\Ā%s run.exe", cwd=SWEPT / "current")
    assert found == (Path(__file__).with_name("report.txt").read_text(), 0)
    kept = ["kept", "kept/from 2400", "kept/young"]
    assert tree() == ["current", "held", "held/Ā%s run.exe", *kept, "link"]


# Entries are seen while their folder's path with "\*" and the long-path prefix has at most 500 units.
# The prefix takes 4 units, on the network 6. A deletion uses it for a path of 240 units or more, a
# search for a pattern of more than 240. With the prefix, Windows keeps a final dot.
@pytest.mark.parametrize("directory, units, end, is_left", [
    ("X:\\test\\swept\\", 496, "/o", False),
    ("X:\\test\\swept\\", 497, "/o", True),
    ("X:\\test\\swept\\", 497, "/e/", False),  # an empty folder, which is removed unseen
    ("X:\\test\\swept\\", 239, ".", True),
    ("X:\\test\\swept\\", 240, ".", False),
    ("X:\\test\\swept\\", 241, "./o", True),
    ("X:\\test\\swept\\", 242, "./o", False),
    ("\\\\server\\share\\", 494, "/o", False),
    ("\\\\server\\share\\", 495, "/o", True),
])
def test_reaches_paths_up_to_a_length(directory: str, units: int, end: str, is_left: bool) -> None:
    folder = SWEPT if directory.startswith("X:") else X / "share"
    rest = units - len(directory + end)
    file = "d/" * ((rest - 1) // 2) + "f" * (2 - rest % 2) + end
    make(file, folder=folder)
    output = run("-do", "14", directory).output
    assert (folder / file).exists() == is_left
    assert not is_left or "\nErrors:\n Error deleting folder " in output


def test_deletes_the_neighbour_of_a_name_that_windows_changes() -> None:
    deep = f"{'f' * 237}/{'g' * 238}"  # "young" in it has a path of 496 units, the most that fit
    make("a/in/blank ", "b/young.", f"{deep}/young is cut", f"{deep}/other is cut")
    make("b/young", f"{deep}/young", days=YOUNG)
    output = run(r"X:\test\swept", "-do", "14").output
    assert "\n  4 files deleted" in output
    assert output.count("Error deleting folder") == 1
    assert tree(SWEPT / "a") == ["in", "in/blank "]
    assert tree(SWEPT / "b") == ["young."]
    assert tree(SWEPT / deep) == ["other is cut", "young is cut"]


def test_leaves_the_tree_by_no_name() -> None:
    make("  x", "\uffff", "a;b", "\ufe0f\u200b", "n" * 255)
    make(".../x", "..../x", ".. /x", ". /x", " /x", ".. ./x")
    make("young", days=YOUNG)
    assert run(r"X:\test\swept", "-do", "14").code == 0
    assert [path for path in tree() if path[0] not in ". "] == ["young"]


def test_ends_a_cycle_of_links_where_the_paths_end() -> None:
    make("old", "sub/old")
    make("sub/young", days=YOUNG)
    (SWEPT / "sub/up").symlink_to("..")
    assert "\n  2 files deleted" in run(r"X:\test\swept", "-do", "14").output
    assert tree() == ["sub", "sub/up", "sub/young"]
