"""How the program reads its arguments. The manual's mistakes and stars are in test_manual.py."""

import re

import pytest
from conftest import INSTALLED, LOST, PREFIX, TOOL, X, make, run, text, tree

RECORDS = [record.split("\n", 1) for record in text("command_lines.txt").split("\n> ")[1:]]


def test_shows_its_usage_for_fewer_than_three_arguments() -> None:
    make("old")
    assert run(r"X:\test\swept", "-v") == (text("usage.txt"), 255)
    assert tree() == ["old"]


@pytest.mark.parametrize("command, expected", RECORDS, ids=[record[0] for record in RECORDS])
def test_does_what_the_record_of_a_command_line_says(command: str, expected: str) -> None:
    make("old")
    make("young", days=-10)
    for name in ("s" * 244, "s" * 245):
        share = PREFIX / "dosdevices/unc/server" / name
        share.unlink(missing_ok=True)
        share.symlink_to(X / "test")
    words = re.findall(r'"[^"]*"|\S+', command.split("  # ")[0])
    program, *arguments = (word.strip('"') for word in words)
    found = run(*arguments, program={TOOL: INSTALLED, "lost": LOST}[program])
    assert f"{found.output}(exit code {found.code}; left: {' '.join(tree())})\n" == expected
