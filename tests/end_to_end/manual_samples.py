"""Runs the manual's samples and tables, and compares them with what the program prints.

usage: manual_samples.py PROGRAM MANUAL [--write]

Run it in the environment of the sealed Wine prefix. --write puts the output into the manual.

A sample is a block marked "console": lines "> command", each with the output after it. In the
tables "command | message" and "directory | folders that are run", every row is a run too. Each
sample and each row finds the same folders on drive C:.
"""

import difflib
import os
import re
import shutil
import subprocess
import sys
import time

DRIVE = os.path.join(os.environ["WINEPREFIX"], "drive_c")
PROGRAM = r"C:\suite\bin\win64\kxDeleteOldFiles.exe"
SHARE = "../../../scratch/share/x"
FOLDERS = ("a", "cache", "empty", "temp", "tools", "suite", "exchange", SHARE,
           "users/maria", "users/Max", "users/mia", "users/anna")
EMPTY_FOLDERS = ("cache", "empty", "temp/empty", "suite/sub/cfg_global", SHARE)
FILES = (  # path, days old, KiB
    ("temp/cache/a/old.exr", 20, 1500),
    ("temp/cache/keep.exr", 1, 900),
    ("temp/new.txt", 13, 1),
    ("temp/render.log", 30, 120),
    ("users/maria/AppData/Local/Temp/job.log", 30, 12),
    ("users/maria/Documents/old letter.txt", 400, 1),
    ("users/Max/AppData/Local/Temp/a/b/job.log", 15, 30),
    ("users/Max/AppData/Local/Temp/new.log", 2, 30),
    ("users/mia/Documents/old letter.txt", 400, 1),
    ("users/anna/AppData/Local/Temp/job.log", 400, 1),
    ("exchange/from elsewhere/plan ", 30, 1),
    ("a/te/b/new.txt", 1, 1),
    ("a/b/c/d/new.txt", 1, 1),
)
BANNER = re.compile(r"\.-{64}\n\. kxDeleteOldFiles  8\.4\.02\n\. .*\n\.-{64}\n")
SAMPLE = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)
COMMAND = re.compile(r"^> (.*)\n", re.MULTILINE)
TABLE = re.compile(r"^\| (command \| message|directory \| folders that are run) \|\n.*\n((?:\|.*\n)+)",
                   re.MULTILINE)
CODE = re.compile(r"`([^`]+)`")
FREE_SPACE = re.compile(r"(Free drive space in .* is )[0-9 ]+( MiB)")
FOLDER_RUN = re.compile(r"in folder '(.*)', File have")


def clear():
    for folder in FOLDERS:
        shutil.rmtree(os.path.join(DRIVE, folder), ignore_errors=True)


def lay_out(program):
    clear()
    for path, days, kib in FILES:
        file = os.path.join(DRIVE, path)
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with open(file, "wb") as content:
            content.truncate(kib * 1024)
        written = time.time() - days * 86400 - 60
        os.utime(file, (written, written))
    for folder in EMPTY_FOLDERS:
        os.makedirs(os.path.join(DRIVE, folder))
    for folder in ("suite/bin/win64", "tools/bin"):
        os.makedirs(os.path.join(DRIVE, folder))
        shutil.copy(program, os.path.join(DRIVE, folder, "kxDeleteOldFiles.exe"))


def run(command, folder="C:\\"):
    """What the program prints after its banner."""
    program, *arguments = [word.strip('"') for word in re.findall(r'"[^"]*"|\S+', command)]
    if program == "kxDeleteOldFiles":
        program = PROGRAM
    done = subprocess.run(["wine", program, *arguments], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, timeout=60, check=False,
                          cwd=os.path.join(DRIVE, folder[3:]))
    output = done.stdout.decode("latin1").replace("\r\n", "\n")
    banner = BANNER.match(output)
    if not banner:
        sys.exit(f"no banner: {command}\nexit code {done.returncode}, raw output {done.stdout!r}")
    return FREE_SPACE.sub(r"\g<1>79 174\g<2>", output[banner.end():]).rstrip("\n") + "\n"


def row_of(kind, row):
    """The row as the program has it."""
    first, rest = row[2:].split(" | ", 1)
    words = CODE.findall(first)
    if not words:
        return row  # a head line
    if kind.startswith("command"):
        return f"| {first} | `{run(words[0])[:-1]}` |"
    runs = FOLDER_RUN.findall(run(f"kxDeleteOldFiles -do 14 {words[0]}", *words[1:]))
    remark = rest[rest.index(" ("):] if " (" in rest else " |"
    return f"| {first} | {', '.join(f'`{folder}`' for folder in runs) or 'none'}{remark}"


def main():
    program, manual = sys.argv[1:3]
    with open(manual, encoding="utf-8") as file:
        before = file.read()
    count = 0

    def laid_out(function, *arguments):
        nonlocal count
        count += 1
        lay_out(program)
        return function(*arguments)

    def sample(match):
        return "```console\n" + laid_out(
            lambda: "".join(f"> {command}\n{run(command)}" for command in COMMAND.findall(match[1]))
        ) + "```"

    def table(match):
        rows = [laid_out(row_of, match[1], row) + "\n" for row in match[2].splitlines()]
        return match[0][:match.start(2) - match.start()] + "".join(rows)

    after = TABLE.sub(table, SAMPLE.sub(sample, before))
    clear()
    if sys.argv[3:] == ["--write"]:
        with open(manual, "w", encoding="utf-8") as file:
            file.write(after)
    elif after != before:
        sys.exit("".join(difflib.unified_diff(before.splitlines(True), after.splitlines(True),
                                              "manual", "program")))
    print(f"{count} samples and rows")
    sys.exit(count < 25)


if __name__ == "__main__":
    main()
