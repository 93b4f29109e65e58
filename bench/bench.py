"""Measures the tool against the bare Windows calls; writes tables and a picture.

Called by ./dev bench, in the environment of the sealed Wine prefix.
"""

import argparse
import os
import platform
import shlex
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from math import log

import measure
import picture
import trees

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
REPORT = os.path.join(ROOT, "build", "bench.md")
PAGE = os.path.join(ROOT, "docs", "performance.md")
BEGIN, END = "<!-- begin of the measured part -->\n", "<!-- end of the measured part -->\n"

SWEPT = r"X:\bench\tree"
TOOL = r"Y:\suite\bin\win64\kxDeleteOldFiles.exe"
COMMANDS = {
    "tool": [TOOL, "-do", "14", SWEPT],
    "tool -v": [TOOL, "-do", "14", "-v", SWEPT],
    "floor": [r"Y:\bench\floor.exe", SWEPT, "14"],
    "floor, no reset": [r"Y:\bench\floor.exe", SWEPT, "14", "--no-reset"],
    "rival": [r"Y:\bench\rival.exe", SWEPT, "14"],
    "empty": [r"Y:\bench\empty.exe"],
}

COMPARED = ("tool", "floor", "floor, no reset", "rival")
FILES = {"none": 50_000, "half": 5_000, "all": 5_000}
GROWTH_FILES = (1_000, 10_000, 100_000)
GROWTH_ROUNDS = {"flat": 3, "wide": 3, "deep": 1, "mixed": 1}
MEMORY_FILES = 100_000
CALLS_FILES = 2_000
START_ROUNDS = 21


class Bench:
    """Runs the programs on trees that it makes in one folder, and checks what they leave."""

    def __init__(self, folder, rounds):
        self.root = os.path.join(folder, "tree")
        self.rounds = rounds
        self.empty_tree = trees.generate("flat", 0, "none")

    def lay_out(self, tree):
        shutil.rmtree(self.root, ignore_errors=True)
        trees.create(tree, self.root, time.time())

    def check(self, name, tree):
        if trees.paths_below(self.root) != tree.left():
            raise SystemExit(f"bench: {name} left a wrong tree behind")

    def run(self, name, tree):
        self.lay_out(tree)
        cost, output = measure.run(COMMANDS[name])
        self.check(name, tree)
        if name == "tool" and f"  {tree.old_count()} files deleted" not in output:
            raise SystemExit(f"bench: the tool reports another number of files:\n{output}")
        return cost

    def peak(self, name, tree):
        self.lay_out(tree)
        peak = measure.peak_memory(COMMANDS[name])
        self.check(name, tree)
        return peak

    def in_turn(self, names, tree, rounds=None):
        """Returns a list of costs for each program. The programs take turns: A B C A B C ..."""
        costs = {name: [] for name in names}
        for _ in range(rounds or self.rounds):
            for name in names:
                costs[name].append(self.run(name, tree))
        return costs

    def calls(self, name, tree):
        self.lay_out(tree)
        calls = measure.system_calls(COMMANDS[name])
        self.check(name, tree)
        return calls


def median_of(costs, field):
    return statistics.median(getattr(cost, field) for cost in costs)


def median_ratio(costs, base, field):
    """The median of the ratios of each round."""
    return statistics.median(
        getattr(cost, field) / getattr(other, field) for cost, other in zip(costs, base))


def table(heads, rows):
    lines = [heads, [":--" if column == 0 else "--:" for column in range(len(heads))], *rows]
    return "".join(f"| {' | '.join(map(str, line))} |\n" for line in lines) + "\n"


def say(text):
    print(text, flush=True)


def time_section(bench):
    rows = []
    for shape in trees.SHAPES:
        for share, count in FILES.items():
            costs = bench.in_turn(COMPARED, trees.generate(shape, count, share))
            ratios = [f"{median_ratio(costs[name], costs[base], field):.2f}" for name, base, field in (
                ("tool", "floor", "wall"), ("tool", "floor", "cpu"), ("rival", "floor", "cpu"),
                ("floor, no reset", "floor", "cpu"), ("tool", "rival", "cpu"))]
            rate = f"{count / median_of(costs['tool'], 'wall'):,.0f}"
            rows.append([shape, share, f"{count:,}", *ratios, rate])
            say(f"  {shape}, {share} old: {ratios[1]} of the floor, {ratios[4]} of the rival")
    return ("Time as a multiple of the floor's; \"tool to rival\" as a multiple of the rival's:\n\n"
            + table(["shape", "old", "files", "tool, wall", "tool, processor", "rival, processor",
                     "floor without reset, processor", "tool to rival, processor",
                     "tool, files/s"], rows))


def growth_section(bench):
    rows = []
    for shape, rounds in GROWTH_ROUNDS.items():
        names = ("tool", "floor")
        start = bench.in_turn(names, bench.empty_tree)
        times = {name: [] for name in names}
        for count in GROWTH_FILES:
            costs = bench.in_turn(names, trees.generate(shape, count, "half"), rounds)
            for name in names:
                spent = median_of(costs[name], "cpu") - median_of(start[name], "cpu")
                times[name].append(spent)
        for name in names:
            # The slope of a straight line through the points on logarithmic axes.
            slope = statistics.linear_regression(
                [log(count) for count in GROWTH_FILES], [log(spent) for spent in times[name]]).slope
            rows.append([shape, name, *(f"{spent:.3f} s" for spent in times[name]), f"{slope:.3f}"])
            say(f"  {shape}, {name}: exponent {slope:.3f}")
    return "Growth: processor time without the start, half of the files old:\n\n" + table(
        ["shape", "program", *(f"{count:,} files" for count in GROWTH_FILES), "exponent"], rows)


def memory_section(bench):
    empty = bench.peak("empty", bench.empty_tree)
    rows = []
    for shape in trees.SHAPES:
        tree = trees.generate(shape, MEMORY_FILES, "none")
        for name in ("tool", "tool -v", "floor"):
            peak = bench.peak(name, tree) - empty
            rows.append([shape, name, f"{peak / 2**20:.1f} MiB", f"{peak / MEMORY_FILES:.0f}"])
            say(f"  {shape}, {name}: {peak / MEMORY_FILES:.0f} bytes per file")
    return (f"Peak memory minus that of the empty program; {MEMORY_FILES:,} files with names of 12 "
            "characters, none of them old:\n\n"
            + table(["shape", "program", "peak", "bytes per file"], rows))


def calls_section(bench):
    rows = []
    for shape in trees.SHAPES:
        tree = trees.generate(shape, CALLS_FILES, "half")
        per_file = {
            name: (bench.calls(name, tree) - bench.calls(name, bench.empty_tree)) / CALLS_FILES
            for name in ("tool", "floor")}
        ratio = f"{per_file['tool'] / per_file['floor']:.3f}"
        rows.append([shape, f"{per_file['tool']:.1f}", f"{per_file['floor']:.1f}", ratio])
        say(f"  {shape}: {ratio} of the floor's")
    return ("System calls per file, of the program and the Wine server together, without those of a "
            f"run on an empty folder; {CALLS_FILES:,} files, half of them old:\n\n"
            + table(["shape", "tool", "floor", "ratio"], rows))


def start_section():
    costs = {"tool": [], "empty": []}
    for _ in range(START_ROUNDS):
        costs["tool"].append(measure.run([TOOL], expected_exit=255)[0])
        costs["empty"].append(measure.run(COMMANDS["empty"])[0])
    ratio = median_ratio(costs["tool"], costs["empty"], "wall")
    say(f"  {ratio:.2f} of the empty program")
    tool, empty = (1000 * median_of(costs[name], "wall") for name in ("tool", "empty"))
    return (f"Start, with banner and usage text: {tool:.0f} ms. The empty program: {empty:.0f} ms. "
            f"Ratio: {ratio:.2f}.\n\n")


def size_section():
    program = os.path.join(ROOT, "build", "kxDeleteOldFiles.exe")
    with tempfile.TemporaryDirectory() as folder:
        stripped = os.path.join(folder, "stripped.exe")
        subprocess.run([os.environ["KX_TOOLCHAIN"] + "/bin/ucrt64-strip", "-o", stripped, program],
                       check=True)
        size = os.path.getsize(stripped)
    say(f"  {size:,} bytes")
    return f"Size of the stripped program: {size:,} bytes.\n\n"


def million_section(bench):
    tree = trees.generate("wide", 1_000_000, "half", per_folder=1_000)
    wall = bench.run("tool", tree).wall
    peak = bench.peak("tool", tree) / 2**20
    text = (f"One million files in 1,000 folders, half of them old: {wall:.0f} s, peak memory "
            f"{peak:.0f} MiB, the right tree left.\n\n")
    say("  " + text.strip())
    return text


def machine():
    wine = subprocess.run(["wine", "--version"], capture_output=True, text=True, check=True)
    return (f"{os.cpu_count()} cores, Linux {platform.release().split('-')[0]}, "
            f"{wine.stdout.strip()}")


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    say(f"written: {os.path.relpath(path, ROOT)}")


def draw(report, path):
    if picture.draw(report, path):
        say(f"written: {os.path.relpath(path, ROOT)}")
    else:
        say("no picture: there is no table of times")


def split_page():
    """The page's text before the measured part, the measured part, and the text after it."""
    with open(PAGE, encoding="utf-8") as page:
        before, rest = page.read().split(BEGIN)
    return before, *rest.split(END)


def write_report(report, to_page):
    write(REPORT, report)
    draw(report, REPORT.replace(".md", ".svg"))
    if to_page:
        before, _, after = split_page()
        write(PAGE, before + BEGIN + report + END + after)
        draw(report, PAGE.replace(".md", ".svg"))


def pin_to_one_core():
    """Saves the programs and the server from waiting for each other's core to wake up."""
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})


SECTIONS = {
    "time": time_section,
    "growth": growth_section,
    "memory": memory_section,
    "calls": calls_section,
    "start": lambda _: start_section(),
    "size": lambda _: size_section(),
    "million": million_section,
}


def read_options():
    parser = argparse.ArgumentParser(
        prog="./dev bench",
        description="Measures the tool and writes tables and a picture: build/bench.md and build/bench.svg.",
        epilog="A trial that takes a minute: ./dev bench --only time --rounds 1")
    parser.add_argument("--rounds", type=int, default=5, help="rounds of each comparison (5)")
    parser.add_argument("--million", action="store_true", help="also sweep one million files")
    parser.add_argument("--on", default="/dev/shm", metavar="FOLDER",
                        help="the disk for the trees; by default the RAM disk")
    parser.add_argument("--only", choices=SECTIONS, help="measure only this")
    parser.add_argument("--write", action="store_true",
                        help="also put tables and picture into docs/performance.md and .svg")
    parser.add_argument("--redraw", action="store_true",
                        help="only draw docs/performance.svg from the table in docs/performance.md")
    options = parser.parse_args()
    if options.write and options.only:
        parser.error("--write needs all sections")
    return options


def measure_sections(options):
    names = [name for name in SECTIONS if name != "million" or options.million]
    sections = []
    link = os.path.join(ROOT, "build", "scratch", "bench")
    with tempfile.TemporaryDirectory(prefix="kx-bench.", dir=options.on) as folder:
        if os.path.islink(link):
            os.unlink(link)
        os.symlink(folder, link)
        os.chdir(os.path.join(ROOT, "build", "logs"))
        bench = Bench(folder, options.rounds)
        for name in [options.only] if options.only else names:
            say(f"== {name}")
            sections.append(SECTIONS[name](bench))
        os.unlink(link)
    return "".join(sections)


def main():
    options = read_options()
    if options.redraw:
        draw(split_page()[1], PAGE.replace(".md", ".svg"))
        return
    pin_to_one_core()
    command = shlex.join(["./dev", "bench", *sys.argv[1:]])
    sections = measure_sections(options)
    head = (f"Measured with `{command}` in {options.rounds} rounds on {machine()}, "
            f"{time.strftime('%Y-%m-%d')}.\n\n")
    write_report(head + sections, options.write)


if __name__ == "__main__":
    main()
