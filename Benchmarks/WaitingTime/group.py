#!/usr/bin/env python3
"""What `measure` finds, as a report of the group waiting-time (Benchmarks/README.md).

Two things are measured besides where the environment names them: a real library
(KORVO_REAL_LIBRARY, a BibTeX file), and the programs of an older build (KORVO_OLDER_PROGRAMS, their
directory).
"""

import argparse
import dataclasses
import json
import os
import pathlib
import subprocess
import sys

MEASURE = pathlib.Path(__file__).resolve().parent / "measure"
PANDOC = "pandoc --citeproc"
EVERYTHING = {
    "first": "first time",
    "again": "again, unchanged",
    "changed": "after one change",
    "pandoc": PANDOC,
}
# The library that the plots are of.
PLOTTED = 2000
# In seconds: what korvo needs to rehearse with a library of some thousands in its default style.
REST = 20
MOST_BESIDE_PANDOC = {100: 1.0, 1000: 1.0, 10000: 1.0}
LEAST_TIMES_FASTER = {"again": 20, "changed": 3}
MOST_GROWTH = 10.5
MOST_SECONDS_TO_PROGRESS = 0.5


@dataclasses.dataclass(frozen=True)
class Part:
    """One run of `measure`, and what those of its times that are told are called."""

    arguments: tuple[str, ...]
    names: dict[str, str]

    def rows(self):
        command = [sys.executable, MEASURE, "--json", *self.arguments]
        finished = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True)
        measured = json.loads(finished.stdout)
        for row in measured["rows"]:
            row["names"] = self.names
        return measured["rows"], measured["versions"]


def quick_parts():
    yield Part(
        ("--libraries", "200", "--citations", "20,200", "--styles", "apa")
        + ("--repetitions", "1", "--settle", "0.5"),
        EVERYTHING,
    )


def parts():
    plotted = ("--libraries", str(PLOTTED))
    once = ("--repetitions", "1")
    yield Part((*plotted, "--citations", "10,100,1000,10000"), EVERYTHING)
    yield Part((*plotted, *once, "--citations", "100000"), EVERYTHING)
    # A million works: more are no request that korvo takes.
    yield Part(
        (*plotted, *once, "--citations", "75000,750000", "--styles", "apa,nature", "--no-pandoc"),
        EVERYTHING,
    )
    rested = (*once, "--settle", str(REST), "--no-pandoc")
    rested_name = {"first": f"first time, after {REST} s of rest"}
    yield Part((*plotted, *rested, "--citations", "100,1000,10000", "--styles", "apa"), rested_name)
    older = os.environ.get("KORVO_OLDER_PROGRAMS")
    if older:
        yield Part(
            (*plotted, *once, "--citations", "10,100,1000,10000,100000", "--no-pandoc")
            + ("--programs", older),
            {"first": "first time, older korvo"},
        )
    yield Part(
        ("--libraries", "100000", *once, "--citations", "100,1000,10000", "--styles", "apa"),
        EVERYTHING,
    )
    real = os.environ.get("KORVO_REAL_LIBRARY")
    if real:
        library = ("--library", real, "--citations", "100,1000,10000")
        yield Part((*library, *once, "--settle", "3"), EVERYTHING)
        yield Part((*library, *rested), rested_name)


def subject(row):
    return f"{row['style']}, {row['references']:,} references"


def sized(row):
    return {"size": row["citations"], "sizeUnit": "citations"}


def document_of(row):
    return row["style"], row["references"], row["citations"]


def seconds(row, what, pandoc):
    """The row of one measured time, beside pandoc's where that was measured."""
    values = [run["wall"] for run in row[what]["runs"]]
    told = {
        **({"plot": f"{row['style']}, library of {PLOTTED:,}"} if is_plotted(row) else {}),
        "name": f"{subject(row)}: {row['names'][what]}",
        **sized(row),
        "median": row[what]["wall"],
        "unit": "s",
        "spread": max(values) - min(values),
        "repetitions": len(values),
    }
    if what != "pandoc" and document_of(row) in pandoc:
        told["beside"] = f"{subject(row)}: {PANDOC}"
        told["ratio"] = row[what]["wall"] / pandoc[document_of(row)]
        if what == "first" and row["citations"] in MOST_BESIDE_PANDOC:
            told["aim"] = MOST_BESIDE_PANDOC[row["citations"]]
    return told


def is_plotted(row):
    return row["references"] == PLOTTED


def times_faster(row):
    for what, least in LEAST_TIMES_FASTER.items():
        yield {
            "name": f"{subject(row)}: {row['names'][what]}, times faster than the first time",
            **sized(row),
            "median": row["first"]["wall"] / row[what]["wall"],
            "unit": "times",
            "aim": least,
            "aimIs": "least",
        }


def growth(rows):
    by_document = {document_of(row): row for row in rows}
    for (style, references, citations), row in by_document.items():
        smaller = by_document.get((style, references, citations // 10))
        if smaller and citations > 1000:
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


def report(rows, versions):
    pandoc = {document_of(row): row["pandoc"]["wall"] for row in rows if "pandoc" in row}
    told = []
    for row in rows:
        told += [seconds(row, what, pandoc) for what in row["names"] if what in row]
    whole = [row for row in rows if row["names"] is EVERYTHING]
    for row in whole:
        told += [*times_faster(row), *progress(row)]
    told += growth(whole)
    return {
        "group": "waiting-time",
        "title": "What an author waits for",
        "rows": told,
        "versions": {name: line.split()[-1] for name, line in versions.items()},
    }


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument(
        "--json", action="store_true", help="accepted as of every measuring program; always done"
    )
    parser.add_argument("--quick", action="store_true")
    arguments = parser.parse_args()
    rows, versions = [], {}
    for part in quick_parts() if arguments.quick else parts():
        found, known = part.rows()
        rows += found
        versions |= known
    print(json.dumps(report(rows, versions), ensure_ascii=False))


if __name__ == "__main__":
    main()
