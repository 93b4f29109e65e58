"""Draws processor times as an SVG picture."""

import matplotlib
from matplotlib import pyplot

# Multiples of processor time by shape, for each heading of a comparison and share of old files.
Multiples = dict[tuple[str, str], dict[str, float]]

TITLES = {"none": "no file is old", "half": "half of the files are old", "all": "all files are old"}
PROGRAMS = {"tool": ("#0072B2", -0.2), "rival": ("#D55E00", 0.2)}  # by heading: colour, place in the row
TICKS = (0.5, 1, 2, 4, 8, 16)

matplotlib.use("svg")
matplotlib.rcParams.update({
    "svg.fonttype": "none",  # text stays text
    "svg.hashsalt": "kxDeleteOldFiles",  # the same names in the file each time
    "font.sans-serif": ["DejaVu Sans", "Verdana", "Arial"],
})


def _draw_share(axes, title, programs):
    axes.axvline(1, color="#333333", linewidth=1, label="floor")
    for program, (colour, offset) in PROGRAMS.items():
        multiples = list(programs[program].values())
        places = [row + offset for row in range(len(multiples))]
        bars = axes.barh(places, [multiple - 1 for multiple in multiples], left=1, height=0.3,
                         color=colour, label=program)
        axes.bar_label(bars, [f"{multiple:.2f}" for multiple in multiples], padding=4, fontsize=8)
    axes.set_title(title, loc="left", fontsize=10)
    axes.set_yticks(range(len(programs["tool"])), programs["tool"])
    axes.invert_yaxis()
    axes.set_xscale("log")
    axes.margins(x=0.12)
    axes.set_xticks(TICKS, TICKS)
    axes.minorticks_off()
    axes.grid(axis="x", color="#DDDDDD")
    axes.set_axisbelow(True)
    axes.spines[["top", "right", "left"]].set_visible(False)


def draw(multiples: Multiples, path: str) -> None:
    figure, panels = pyplot.subplots(len(TITLES), sharex=True, figsize=(7, 6.5))
    for axes, (share, title) in zip(panels, TITLES.items()):
        _draw_share(axes, title, {program: multiples[program, share] for program in PROGRAMS})
    panels[-1].set_xlabel("processor time as a multiple of the floor's (logarithmic)")
    handles, labels = panels[0].get_legend_handles_labels()
    figure.legend(handles, labels, loc="upper right", ncols=len(labels), frameon=False)
    figure.tight_layout()
    figure.savefig(path, metadata={"Date": None, "Creator": None})
