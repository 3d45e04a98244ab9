#!/usr/bin/env python3
"""What `measure` finds, as a report of the group waiting-time (Benchmarks/README.md).

With --from FILE a measurement that was kept is told, in place of a new one, which takes long.
"""

import argparse
import json
import pathlib
import subprocess
import sys

MEASURE = pathlib.Path(__file__).resolve().parent / "measure"
QUICK = [
    "--libraries",
    "200",
    "--citations",
    "20,200",
    "--styles",
    "apa",
    "--repetitions",
    "1",
    "--settle",
    "0.5",
]
NAMES = {
    "first": "first time",
    "again": "again, unchanged",
    "changed": "after one change",
    "pandoc": "pandoc --citeproc",
}
MOST_BESIDE_PANDOC = {1000: 1.5, 10000: 1.0}
LEAST_TIMES_FASTER = {"again": 20, "changed": 3}
MOST_GROWTH = 12
MOST_SECONDS_TO_PROGRESS = 0.5


def subject(row):
    return f"{row['style']}, {row['references']:,} references"


def sized(row):
    return {"size": row["citations"], "sizeUnit": "citations"}


def seconds(row, what, plot):
    """The row of one measured time; beside pandoc where that was measured."""
    values = [run["wall"] for run in row[what]["runs"]]
    told = {
        **({"plot": plot} if plot else {}),
        "name": f"{subject(row)}: {NAMES[what]}",
        **sized(row),
        "median": row[what]["wall"],
        "unit": "s",
        "spread": max(values) - min(values),
        "repetitions": len(values),
    }
    if what != "pandoc" and "pandoc" in row:
        told["beside"] = f"{subject(row)}: {NAMES['pandoc']}"
        told["ratio"] = row[what]["wall"] / row["pandoc"]["wall"]
        if what == "first" and row["citations"] in MOST_BESIDE_PANDOC:
            told["aim"] = MOST_BESIDE_PANDOC[row["citations"]]
    return told


def times_faster(row):
    for what, least in LEAST_TIMES_FASTER.items():
        if what in row:
            yield {
                "name": f"{subject(row)}: {NAMES[what]}, times faster than the first time",
                **sized(row),
                "median": row["first"]["wall"] / row[what]["wall"],
                "unit": "times",
                "aim": least,
                "aimIs": "least",
            }


def growth(rows):
    by_document = {(row["style"], row["references"], row["citations"]): row for row in rows}
    for (style, references, citations), row in by_document.items():
        smaller = by_document.get((style, references, citations // 10))
        if smaller:
            yield {
                "name": f"{subject(row)}: ten times the citations",
                **sized(row),
                "median": row["first"]["wall"] / smaller["first"]["wall"],
                "unit": "times",
                "aim": MOST_GROWTH,
            }


def progress(row):
    shown = row["first"]["progress"]
    if shown is not None:
        yield {
            "name": f"{subject(row)}: until progress is shown",
            **sized(row),
            "median": shown,
            "unit": "s",
            "aim": MOST_SECONDS_TO_PROGRESS,
        }


def report(measured):
    rows = measured["rows"]
    largest = max(row["references"] for row in rows)
    told = []
    for row in rows:
        plot = f"{row['style']}, library of {largest:,}" if row["references"] == largest else None
        told += [seconds(row, what, plot) for what in NAMES if what in row]
    for row in rows:
        told += [*times_faster(row), *progress(row)]
    told += growth(rows)
    return {
        "group": "waiting-time",
        "title": "What an author waits for",
        "rows": told,
        "versions": {name: line.split()[-1] for name, line in measured["versions"].items()},
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument(
        "--json", action="store_true", help="accepted as of every measuring program; always done"
    )
    parser.add_argument("--quick", action="store_true")
    parser.add_argument(
        "--from", dest="kept", type=pathlib.Path, metavar="FILE", help="what measure --json printed"
    )
    arguments = parser.parse_args()
    if arguments.kept:
        text = arguments.kept.read_text(encoding="utf-8")
    else:
        command = [sys.executable, MEASURE, "--json", *(QUICK if arguments.quick else [])]
        text = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout
    print(json.dumps(report(json.loads(text)), ensure_ascii=False))


if __name__ == "__main__":
    main()
