"""What a sweep deletes, keeps and reports; names, paths and links of unusual shape."""

import pytest
from conftest import SWEPT, X, YOUNG, make, rows, run, text, tree


def test_decides_by_age_follows_links_and_reports() -> None:
    make("kept/old", days=14.001, content=bytes(1535))
    make("kept/Small", content=bytes(511))
    make("kept/young", days=13.999)
    make("kept/from 2400", days=-136_600)
    make("young/old", folder=X / "test", content=bytes(512))
    make("readonly", content=bytes(2_000_000))
    (SWEPT / "readonly").chmod(0o444)
    (SWEPT / "link").symlink_to("../young")
    assert run("-do", "14", "X:\\test\\swept\\", "-V") == (text("report_ages.txt"), 0)
    assert tree() == ["kept", "kept/from 2400", "kept/young", "link"]


def test_reports_what_is_in_use_and_goes_on() -> None:
    make("current/", "held/old", "other/old")
    make("held/Ā%s run.exe", content=(X / "lost.exe").read_bytes())
    command = ("-kxRoot", r"X:\suite", r"X:\test\swept", "-v")
    found = run(*command, program=r"X:\test\swept\held\Ā%s run.exe", cwd=SWEPT / "current")
    assert found == (text("report_in_use.txt"), 0)
    assert tree() == ["current", "held", "held/Ā%s run.exe"]


@pytest.mark.parametrize("directory", [r"X:\test\swept\named", r"X:\test\swept\n*", r"test\swept\named"])
def test_never_removes_the_folder_that_was_named_or_found_by_a_star(directory: str) -> None:
    make("named/old", "named/in/old", "none/")
    run(directory, "-do", "14")
    kept = [] if directory.startswith("X:") else ["named/in"]  # a relative directory keeps its subfolders
    assert tree() == ["named", *kept, "none"]


@pytest.mark.parametrize("directory, units, end, left", rows(text("lengths.txt")))
def test_reaches_paths_up_to_a_length(directory: str, units: str, end: str, left: str) -> None:
    folder = SWEPT if directory.startswith("X:") else X / "share"
    rest = int(units) - len(directory + end)
    file = "d/" * ((rest - 1) // 2) + "f" * (2 - rest % 2) + end
    make(file, folder=folder)
    output = run("-do", "14", directory).output
    assert (folder / file).exists() == (left == "left")
    assert not left or "\nErrors:\n Error deleting folder " in output


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


def test_takes_any_name_and_leaves_the_tree_by_none() -> None:
    make("  x", "\uffff", "a;b", "\ufe0f\u200b", "n" * 255, "%s 100%/%n/old", "ü/\ufeffЖĀ")
    make(".../x", "..../x", ".. /x", ". /x", " /x", ".. ./x")
    make("young", days=YOUNG)
    output = run(r"X:\test\swept", "-do", "14", "-v").output
    assert "   [X:\\test\\swept\\%s 100%\\%n]: \n     -del old\n" in output
    assert "   [X:\\test\\swept\\ü]: \n     -del ???\n" in output
    assert [path for path in tree() if path[0] not in ". "] == ["young"]


def test_ends_a_cycle_of_links_where_the_paths_end() -> None:
    make("old", "sub/old")
    make("sub/young", days=YOUNG)
    (SWEPT / "sub/up").symlink_to("..")
    output = run(r"X:\test\swept", "-do", "14", "-v").output
    assert output.count("-dir [up]") > 1
    assert tree() == ["sub", "sub/up", "sub/young"]
