"""Draws the plots of a report: lines over sizes, or bars where there are fewer than three sizes.

The files depend on the figures alone, so that drawing them again changes nothing.
"""

import math
import re

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
from matplotlib.ticker import FixedLocator, FuncFormatter, LogLocator, NullFormatter, NullLocator

import reports  # noqa: E402

# Told apart also by readers who see fewer colours, and by their markers.
COLOURS = (
    "#0072B2",
    "#D55E00",
    "#009E73",
    "#CC79A7",
    "#E69F00",
    "#56B4E9",
    "#000000",
    "#7F7F7F",
    "#8B4513",
    "#6A3D9A",
)
MARKERS = "osD^vP*Xhd"
LEAST_SIZES_OF_A_LINE = 3
LARGEST_NUMBER_OF_TICKS = 6
# Above these an axis is logarithmic. Lengths of bars can be compared further than slopes of lines.
FACTOR_OF_LINES, FACTOR_OF_BARS = 10, 1000
GREY = "#555555"
STYLE = {
    "font.family": "DejaVu Sans",
    "font.size": 10,
    "axes.titlesize": 12,
    "axes.titleweight": "bold",
    "axes.titlelocation": "left",
    "axes.titlepad": 12,
    "axes.spines.top": False,
    "axes.spines.right": False,
    "axes.edgecolor": GREY,
    "axes.labelcolor": GREY,
    "xtick.color": GREY,
    "ytick.color": GREY,
    "axes.axisbelow": True,
    "axes.grid": True,
    "grid.color": "#DDDDDD",
    "grid.linewidth": 0.7,
    "legend.frameon": False,
    "figure.facecolor": "white",
    "svg.fonttype": "path",
    "svg.hashsalt": "performance",
    "svg.image_inline": True,
}


def spans(values, factor):
    return min(values) > 0 and max(values) > factor * min(values)


def bytes_text(value):
    for power, name in ((2**30, "GiB"), (2**20, "MiB"), (2**10, "KiB")):
        if value >= power:
            return f"{value / power:g} {name}"
    return f"{value:g} B"


def format_axis(axes, direction, values, unit, factor):
    """Ticks in words that a reader need not decode; logarithmic where the values span more than the
    factor.

    The direction is "x" or "y".
    """
    axis = getattr(axes, direction + "axis")
    in_bytes = unit == "bytes"
    if spans(values, factor):
        axes.set(**{direction + "scale": "log"})
        if in_bytes:
            lowest, highest = math.floor(math.log2(min(values))), math.ceil(math.log2(max(values)))
            step = max(1, math.ceil((highest - lowest) / LARGEST_NUMBER_OF_TICKS))
            axis.set_major_locator(
                FixedLocator([2**power for power in range(lowest, highest + 1, step)])
            )
            axis.set_minor_locator(NullLocator())
        else:
            axis.set_major_locator(LogLocator(base=10, numticks=12))
            axis.set_minor_formatter(NullFormatter())
    axis.set_major_formatter(
        FuncFormatter(lambda value, _: bytes_text(value) if in_bytes else f"{value:,.10g}")
    )
    axis.set_label_text("" if in_bytes else unit)


def by_name(rows):
    """The rows by their names, without a beginning before a colon that all names have in common."""
    names = {}
    beginnings = {row["name"].partition(": ")[0] for row in rows if ": " in row["name"]}
    in_common = len(beginnings) == 1 and all(": " in row["name"] for row in rows)
    for row in rows:
        names.setdefault(row["name"].partition(": ")[2] if in_common else row["name"], []).append(
            row
        )
    return names


def draw_lines(axes, rows):
    compared = {row["beside"] for row in rows if "beside" in row}
    for index, (name, points) in enumerate(by_name(rows).items()):
        points.sort(key=lambda row: row["size"])
        is_compared = points[0]["name"] in compared
        axes.plot(
            [row["size"] for row in points],
            [row["median"] for row in points],
            label=name,
            color=COLOURS[index % len(COLOURS)],
            marker=MARKERS[index % len(MARKERS)],
            markersize=5,
            linewidth=1.8,
            linestyle="--" if is_compared else "-",
        )
    format_axis(
        axes, "x", [row["size"] for row in rows], rows[0].get("sizeUnit", ""), FACTOR_OF_LINES
    )
    medians = [row["median"] for row in rows]
    format_axis(axes, "y", medians, rows[0]["unit"], FACTOR_OF_LINES)
    if not spans(medians, FACTOR_OF_LINES):
        axes.set_ylim(bottom=0)
    axes.legend(loc="center left", bbox_to_anchor=(1.01, 0.5))


def draw_bars(axes, rows):
    """Bars from zero; points where the axis is logarithmic and has no zero."""
    names = list(by_name(rows))
    levels = {
        row["name"]: level for level, same in enumerate(by_name(rows).values()) for row in same
    }
    sizes = sorted({row.get("size", 0) for row in rows})
    compared = {row["beside"] for row in rows if "beside" in row}
    logarithmic = spans([row["median"] for row in rows], FACTOR_OF_BARS)
    height = 0.8 / len(sizes)
    for row in rows:
        place = sizes.index(row.get("size", 0))
        colour = "#9A9A9A" if row["name"] in compared and len(sizes) == 1 else COLOURS[place]
        level = levels[row["name"]] + (
            0 if logarithmic else (place - (len(sizes) - 1) / 2) * height
        )
        if logarithmic:
            axes.plot(row["median"], level, "o", color=colour, markersize=7)
        else:
            axes.barh(level, row["median"], height * 0.9, color=colour)
        axes.annotate(
            reports.number(row["median"]),
            (row["median"], level),
            xytext=(7, 0),
            textcoords="offset points",
            va="center",
            fontsize=8,
            color=GREY,
        )
    axes.set_yticks(range(len(names)), names, color="black")
    axes.invert_yaxis()
    axes.grid(logarithmic, axis="y")
    format_axis(axes, "x", [row["median"] for row in rows], rows[0]["unit"], FACTOR_OF_BARS)
    axes.margins(x=0.12)
    if not logarithmic:
        axes.set_xlim(left=0)
    if len(sizes) > 1:
        handles = [
            plt.Line2D([], [], color=COLOURS[place], marker="o", linestyle="none")
            for place in range(len(sizes))
        ]
        labels = [reports.size_text({**rows[0], "size": size}) for size in sizes]
        axes.legend(handles, labels, loc="center left", bbox_to_anchor=(1.01, 0.5))


def draw_plot(title, rows):
    units = {row["unit"] for row in rows}
    if len(units) != 1:
        raise ValueError(f"the plot {title!r} mixes {', '.join(sorted(units))}")
    has_lines = (
        all("size" in row for row in rows)
        and len({row["size"] for row in rows}) >= LEAST_SIZES_OF_A_LINE
    )
    height = 4.2 if has_lines else 1.2 + 0.34 * len(by_name(rows))
    figure, axes = plt.subplots(figsize=(7.2, height))
    (draw_lines if has_lines else draw_bars)(axes, rows)
    axes.set_title(title)
    return figure


def file_name(group, title):
    return re.sub(r"[^a-z0-9]+", "-", f"{group}-{title}".lower()).strip("-")


def draw(report, directory):
    """Draws every plot of the report into the directory; returns their titles with the file
    names without ending."""
    by_title = {}
    for row in report["rows"]:
        if "plot" in row:
            by_title.setdefault(row["plot"], []).append(row)
    drawn = []
    with plt.rc_context(STYLE):
        for title, rows in by_title.items():
            figure = draw_plot(title, rows)
            name = file_name(report["group"], title)
            figure.savefig(
                directory / f"{name}.svg",
                bbox_inches="tight",
                metadata={"Date": None, "Creator": None},
            )
            plt.close(figure)
            drawn.append((title, name))
    return drawn
