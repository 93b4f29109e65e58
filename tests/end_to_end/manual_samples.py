"""Runs the commands of the manual's samples and compares what the program prints.

usage: manual_samples.py PROGRAM MANUAL [--write]

In the environment of the sealed Wine prefix; with --write it puts the output into the manual. A
sample is a block marked "console": a line "> command", then the output. Each one finds the same
folders on drive C:.
"""

import difflib
import os
import re
import shutil
import subprocess
import sys
import time

DRIVE = os.path.join(os.environ["WINEPREFIX"], "drive_c")
FOLDERS = ("temp", "tools", "suite", "exchange", "users/maria", "users/Max", "users/mia", "users/anna")
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
    ("exchange/from elsewhere/plan ", 30, 1),
    ("users/anna/AppData/Local/Temp/job.log", 400, 1),
)
SAMPLE = re.compile(r"^```console\n(> [^\n]*\n)(.*?)^```$", re.MULTILINE | re.DOTALL)
FREE_SPACE = re.compile(r"(Free drive space in .* is )[0-9 ]+( MiB)")


def clear():
    for folder in FOLDERS:
        shutil.rmtree(os.path.join(DRIVE, folder), ignore_errors=True)


def age(path, days):
    written = time.time() - days * 86400 - 60
    os.utime(path, (written, written))


def lay_out(program):
    clear()
    for path, days, kib in FILES:
        file = os.path.join(DRIVE, path)
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with open(file, "wb") as content:
            content.truncate(kib * 1024)
        age(file, days)
    os.makedirs(os.path.join(DRIVE, "temp", "empty"))
    os.makedirs(os.path.join(DRIVE, "suite", "sub", "cfg_global"))
    for folder in ("suite/bin/win64", "tools/bin"):
        os.makedirs(os.path.join(DRIVE, folder), exist_ok=True)
        shutil.copy(program, os.path.join(DRIVE, folder, "kxDeleteOldFiles.exe"))


def output_of(command):
    program, *arguments = command[2:].split()
    if program == "kxDeleteOldFiles":
        program = r"C:\suite\bin\win64\kxDeleteOldFiles.exe"
    run = subprocess.run(["wine", program, *arguments], stdin=subprocess.DEVNULL,
                         stdout=subprocess.PIPE, timeout=60, check=False, cwd=DRIVE)
    lines = run.stdout.decode("latin1").replace("\r\n", "\n").rstrip("\n").split("\n")
    banner = 0 if len(arguments) < 3 else 4  # shown once, with the usage text
    return FREE_SPACE.sub(r"\g<1>79 174\g<2>", "\n".join(lines[banner:])) + "\n"


def main():
    program, manual = sys.argv[1:3]
    with open(manual, encoding="utf-8") as file:
        before = file.read()

    def run(sample):
        lay_out(program)
        return f"```console\n{sample[1]}{output_of(sample[1])}```"

    after, count = SAMPLE.subn(run, before)
    clear()
    if sys.argv[3:] == ["--write"]:
        with open(manual, "w", encoding="utf-8") as file:
            file.write(after)
    elif after != before:
        sys.exit("".join(difflib.unified_diff(before.splitlines(True), after.splitlines(True),
                                              "manual", "program")))
    print(f"{count} samples")
    sys.exit(count == 0)


if __name__ == "__main__":
    main()
