"""How the program reads its arguments. The manual's mistakes and stars are in test_manual.py."""

import re

import pytest
from conftest import INSTALLED, PREFIX, TOOL, X, make, run, text, tree

TEXT = text("command_lines.txt").replace("{85}", "\x85")
RECORDS = [record.split("\n", 1) for record in TEXT.split("\n> ")[1:]]


@pytest.mark.parametrize("command, expected", RECORDS, ids=[record[0] for record in RECORDS])
def test_does_what_the_record_of_a_command_line_says(command: str, expected: str) -> None:
    make("old")
    make("young", days=-10)
    for name in ("ü" + "s" * 243, "ü" + "s" * 244):
        share = PREFIX / "dosdevices/unc/server" / name
        share.unlink(missing_ok=True)
        share.symlink_to(X / "test")
    program, *arguments = (word.strip('"') for word in re.findall(r'"[^"]*"|\S+', command.split("  # ")[0]))
    found = run(*arguments, program={TOOL: INSTALLED, "lost": r"X:\lost.exe"}[program])
    assert f"{found.output}(exit code {found.code}; left: {' '.join(tree())})\n" == expected
