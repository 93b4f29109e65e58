"""Draws processor times as an SVG picture."""

import matplotlib
from matplotlib import pyplot
from matplotlib.ticker import FixedLocator, NullLocator

# The multiple of the floor's processor time, by share of old files, shape and program.
Drawing = dict[str, dict[str, dict[str, float]]]

TITLES = {"none": "no file is old", "half": "half of the files are old", "all": "all files are old"}
PROGRAMS = {  # marker, colour (told apart by the colour-blind too), place in the row
    "tool": ("o", "#0072B2", -0.17),
    "rival": ("D", "#D55E00", 0.17),
}
FLOOR_COLOUR = "#333333"
TICKS = (0.5, 1, 2, 4, 8, 16)

matplotlib.use("svg")
matplotlib.rcParams.update({
    "svg.fonttype": "none",  # text stays text
    "svg.hashsalt": "kxDeleteOldFiles",  # the same names in the file each time
    "font.family": "sans-serif",
    "font.sans-serif": ["DejaVu Sans", "Verdana", "Arial"],
    "font.size": 10,
})


def _draw_row(axes, multiples, place):
    for program, (marker, colour, offset) in PROGRAMS.items():
        multiple = multiples[program]
        height = place + offset
        axes.plot([1, multiple], [height, height], color=colour, linewidth=2)
        axes.plot(multiple, height, marker, color=colour, markersize=5,
                  label=program if place == 0 else None)
        side, distance = ("right", -7) if multiple < 1 else ("left", 7)
        axes.annotate(f"{multiple:.2f}", (multiple, height), (distance, 0), fontsize=8,
                      textcoords="offset points", horizontalalignment=side, verticalalignment="center")


def _draw_share(axes, title, shapes):
    axes.axvline(1, color=FLOOR_COLOUR, linewidth=1, label="floor")
    for place, multiples in enumerate(shapes.values()):
        _draw_row(axes, multiples, place)
    axes.set_title(title, loc="left", fontsize=10)
    axes.set_yticks(range(len(shapes)), shapes)
    axes.set_ylim(len(shapes) - 0.5, -0.5)
    axes.set_xscale("log")
    axes.margins(x=0.12)
    axes.xaxis.set_major_locator(FixedLocator(TICKS))
    axes.xaxis.set_minor_locator(NullLocator())
    axes.xaxis.set_major_formatter("{x:g}")
    axes.grid(axis="x", color="#DDDDDD")
    axes.set_axisbelow(True)
    axes.tick_params(length=0)
    for side in ("top", "right", "left"):
        axes.spines[side].set_visible(False)


def draw(drawing: Drawing, path: str) -> None:
    figure, panels = pyplot.subplots(len(TITLES), sharex=True, figsize=(7, 6.5))
    for axes, (share, title) in zip(panels, TITLES.items()):
        _draw_share(axes, title, drawing[share])
    panels[-1].set_xlabel("processor time as a multiple of the floor's (logarithmic)")
    handles, labels = panels[0].get_legend_handles_labels()
    figure.legend(handles, labels, loc="upper right", ncols=len(labels), frameon=False)
    figure.tight_layout()
    figure.savefig(path, metadata={"Date": None, "Creator": None})
    pyplot.close(figure)
