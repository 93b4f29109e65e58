"""Measures the tool against the bare Windows calls; writes tables and a picture.

Called by ./dev bench, in the environment of the sealed Wine prefix. Each section returns its part of the
report and its rows of the table of bars.
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
from collections import defaultdict
from collections.abc import Callable, Iterable
from math import log
from typing import Any

import measure
import picture
import trees
from measure import Cost

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

# The comparisons of processor time: program, base, heading in the table, bars by the shares of old files.
COMPARISONS: list[tuple[str, str, str, dict[tuple[str, ...], float]]] = [
    ("tool", "floor", "tool", {("half", "all"): 1.15, ("none",): 1.30}),
    ("rival", "floor", "rival", {}),
    ("floor, no reset", "floor", "floor without reset", {}),
    ("tool", "rival", "tool to rival", {("none",): 1, ("half", "all"): 1}),
]
FILES = {"none": 50_000, "half": 5_000, "all": 5_000}
GROWTH_FILES = (1_000, 10_000, 100_000)
GROWTH_ROUNDS = 3
MEMORY_FILES = 100_000
CALLS_FILES = 2_000
START_ROUNDS = 21

Row = list[str]
Section = tuple[str, list[Row]]
EMPTY_TREE = trees.generate("flat", 0, "none")


class Bench:
    """Runs the programs on trees that it makes in one folder, and checks what they leave."""

    def __init__(self, folder: str, rounds: int) -> None:
        self.root = os.path.join(folder, "tree")
        self.rounds = rounds
        self.server = measure.start_server()
        self.multiples: picture.Multiples = defaultdict(dict)

    def measured(self, how: Callable[[measure.Server, list[str]], Any], name: str, tree: trees.Tree) -> Any:
        """Makes the tree, returns what `how` measures of the program, and checks what is left."""
        shutil.rmtree(self.root, ignore_errors=True)
        trees.create(tree, self.root, time.time())
        result = how(self.server, COMMANDS[name])
        if trees.paths_below(self.root) != tree.left():
            raise SystemExit(f"bench: {name} left a wrong tree behind")
        return result

    def run(self, name: str, tree: trees.Tree) -> Cost:
        cost, output = self.measured(measure.run, name, tree)
        if name == "tool" and f"  {tree.old_count()} files deleted" not in output:
            raise SystemExit(f"bench: the tool reports another number of files:\n{output}")
        return cost

    def in_turn(self, names: Iterable[str], tree: trees.Tree, rounds: int) -> dict[str, list[Cost]]:
        """Returns the costs of each program. The programs take turns: A B C A B C ..."""
        turns = [{name: self.run(name, tree) for name in names} for _ in range(rounds)]
        return {name: [turn[name] for turn in turns] for name in names}


def median_ratio(costs: list[Cost], base: list[Cost], field: str = "cpu") -> float:
    """The median of the ratios of each round."""
    return statistics.median(
        getattr(cost, field) / getattr(other, field) for cost, other in zip(costs, base))


def table(heads: Row, rows: list[Row]) -> str:
    lines = [heads, [":--" if column == 0 else "--:" for column in range(len(heads))], *rows]
    return "".join(f"| {' | '.join(line)} |\n" for line in lines) + "\n"


def bar(what: str, limit: float, values: list[float], form: str = "{:.2f}") -> Row:
    """A row of the table of bars: what, the bar, and the range of the measured values, rounded."""
    low, high = form.format(min(values)), form.format(max(values))
    shown = high if low == high else f"{low} to {high}"
    is_missed = max(values) > limit and high != form.format(limit)
    return [what, form.format(limit), f"**{shown}, missed**" if is_missed else shown]


def time_section(bench: Bench) -> Section:
    programs = dict.fromkeys(name for program, base, *_ in COMPARISONS for name in (program, base))
    rows = []
    for shape in trees.SHAPES:
        for share, count in FILES.items():
            costs = bench.in_turn(programs, trees.generate(shape, count, share), bench.rounds)
            row = {head: median_ratio(costs[program], costs[base]) for program, base, head, _ in COMPARISONS}
            rows.append([shape, share, f"{count:,}", *(f"{multiple:.2f}" for multiple in row.values())])
            for head, multiple in row.items():
                bench.multiples[head, share][shape] = multiple
    bars = [bar(f"processor time against the {base}, {' or '.join(shares)} old", limit,
                [multiple for share in shares for multiple in bench.multiples[head, share].values()])
            for _, base, head, limits in COMPARISONS for shares, limit in limits.items()]
    return ("Processor time as a multiple of the floor's; \"tool to rival\" as a multiple of the rival's:\n\n"
            + table(["shape", "old", "files", *(head for _, _, head, _ in COMPARISONS)], rows), bars)


def growth_section(bench: Bench) -> Section:
    rows, slopes = [], []
    names = ("tool", "floor")
    start = bench.in_turn(names, EMPTY_TREE, GROWTH_ROUNDS)
    for shape in ("flat", "wide"):
        trials = [bench.in_turn(names, trees.generate(shape, count, "half"), GROWTH_ROUNDS)
                  for count in GROWTH_FILES]
        for name in names:
            medians = [statistics.median(cost.cpu for cost in costs[name]) for costs in (start, *trials)]
            spent = [median - medians[0] for median in medians[1:]]
            # The slope of a straight line through the points on logarithmic axes.
            slope = statistics.linear_regression(
                [log(count) for count in GROWTH_FILES], [log(seconds) for seconds in spent]).slope
            slopes += [slope] if name == "tool" else []
            rows.append([shape, name, *(f"{seconds:.3f} s" for seconds in spent), f"{slope:.3f}"])
    return ("Growth: processor time without the start, half of the files old:\n\n" + table(
        ["shape", "program", *(f"{count:,} files" for count in GROWTH_FILES), "exponent"], rows),
        [bar("exponent of growth, flat and wide", 1.05, slopes)])


def memory_section(bench: Bench) -> Section:
    empty = bench.measured(measure.peak_memory, "empty", EMPTY_TREE)
    tree = trees.generate("flat", MEMORY_FILES, "none")
    per_file = {name: (bench.measured(measure.peak_memory, name, tree) - empty) / MEMORY_FILES
                for name in ("tool", "tool -v", "floor")}
    text = ", ".join(f"{name} {number:.0f}" for name, number in per_file.items())
    return (f"Peak memory minus that of the empty program, in bytes per file, for {MEMORY_FILES:,} files in "
            f"one folder with names of 12 characters, none of them old: {text}.\n\n",
            [bar("bytes per file, flat", 250, [per_file["tool"]], "{:.0f}")])


def calls_section(bench: Bench) -> Section:
    rows, ratios = [], []
    for shape in trees.SHAPES:
        tree = trees.generate(shape, CALLS_FILES, "half")
        tool, floor = ((bench.measured(measure.system_calls, name, tree)
                        - bench.measured(measure.system_calls, name, EMPTY_TREE)) / CALLS_FILES
                       for name in ("tool", "floor"))
        ratios.append(tool / floor)
        rows.append([shape, f"{tool:.1f}", f"{floor:.1f}", f"{tool / floor:.3f}"])
    return ("System calls per file, of the program and the Wine server together, without those of a "
            f"run on an empty folder; {CALLS_FILES:,} files, half of them old:\n\n"
            + table(["shape", "tool", "floor", "ratio"], rows),
            [bar("system calls per file against the floor", 1.02, ratios, "{:.3f}")])


def start_section(bench: Bench) -> Section:
    tool, empty = [], []
    for _ in range(START_ROUNDS):
        tool.append(measure.run(bench.server, [TOOL], expected_exit=255)[0])
        empty.append(measure.run(bench.server, COMMANDS["empty"])[0])
    walls = [1000 * statistics.median(cost.wall for cost in costs) for costs in (tool, empty)]
    return ("Start, with banner and usage text: {:.0f} ms. The empty program: {:.0f} ms.\n\n".format(*walls),
            [bar("start to banner against an empty program", 2, [median_ratio(tool, empty, "wall")])])


def size_section(_: Bench) -> Section:
    subprocess.run([os.environ["KX_TOOLCHAIN"] + "/bin/ucrt64-strip", "-o", "stripped.exe",
                    os.path.join(ROOT, "build", "kxDeleteOldFiles.exe")], check=True)
    return "", [bar("stripped program", 2_500_000, [os.path.getsize("stripped.exe")], "{:,} bytes")]


def million_section(bench: Bench) -> Section:
    tree = trees.generate("wide", 1_000_000, "half", per_folder=1_000)
    wall = bench.run("tool", tree).wall
    peak = bench.measured(measure.peak_memory, "tool", tree) / 2**20
    return (f"One million files in 1,000 folders, half of them old: {wall:.0f} s, the right tree left.\n\n",
            [bar("peak memory for one million files in 1,000 folders", 250, [peak], "{:.0f} MiB")])


SECTIONS = {section.__name__.removesuffix("_section"): section for section in (
    time_section, growth_section, memory_section, calls_section, start_section, size_section,
    million_section)}


def write(path: str, text: str) -> None:
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    print(f"written: {os.path.relpath(path, ROOT)}")


def write_report(report: str, multiples: picture.Multiples, to_page: bool) -> None:
    write(REPORT, report)
    if multiples:
        picture.draw(multiples, REPORT.replace(".md", ".svg"))
    else:
        print("no picture: the times were not measured")
    if to_page:
        with open(PAGE, encoding="utf-8") as page:
            before, rest = page.read().split(BEGIN)
        write(PAGE, before + BEGIN + report + END + rest.split(END)[1])
        picture.draw(multiples, PAGE.replace(".md", ".svg"))


def read_options() -> argparse.Namespace:
    parser = argparse.ArgumentParser(
        prog="./dev bench",
        description="Measures the tool and writes tables and a picture: build/bench.md and build/bench.svg.")
    parser.add_argument("--rounds", type=int, default=5, help="rounds of each comparison (5)")
    parser.add_argument("--million", action="store_true", help="also sweep one million files")
    parser.add_argument("--on", default="/dev/shm", metavar="FOLDER",
                        help="the disk for the trees; by default the RAM disk")
    parser.add_argument("--only", choices=SECTIONS, help="measure only this")
    parser.add_argument("--write", action="store_true",
                        help="also put tables and picture into docs/performance.md and .svg")
    options = parser.parse_args()
    if options.write and options.only:
        parser.error("--write needs all sections")
    return options


def measure_sections(bench: Bench, names: list[str]) -> str:
    """Returns the table of bars and the texts of the sections."""
    heads: Row = ["what", "bar", "measured"]
    bars, texts = [], ""
    for name in names:
        print(f"== {name}", flush=True)
        text, rows = SECTIONS[name](bench)
        print(text + table(heads, rows), flush=True)
        texts += text
        bars += rows
    return table(heads, bars) + texts


def main() -> None:
    options = read_options()
    # On one core, the programs and the server do not wait for each other's core to wake up.
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
    os.chdir(os.path.join(ROOT, "build", "scratch"))  # drive X:
    names = [name for name in SECTIONS if name != "million" or options.million]
    with tempfile.TemporaryDirectory(prefix="kx-bench.", dir=options.on) as folder:
        subprocess.run(["ln", "-sfn", folder, "bench"], check=True)
        bench = Bench(folder, options.rounds)
        try:
            sections = measure_sections(bench, [options.only] if options.only else names)
        finally:
            os.unlink("bench")
    command = shlex.join(["./dev", "bench", *sys.argv[1:]])
    system = platform.freedesktop_os_release()["PRETTY_NAME"]
    wine = subprocess.run(["wine", "--version"], capture_output=True, text=True, check=True).stdout.strip()
    head = (f"Measured with `{command}` in {options.rounds} rounds on {os.cpu_count()} cores, {system}, "
            f"Linux {platform.release().split('-')[0]}, {wine}, {time.strftime('%Y-%m-%d')}.\n\n")
    write_report(head + sections, bench.multiples, options.write)


if __name__ == "__main__":
    main()
