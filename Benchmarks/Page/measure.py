#!/usr/bin/python3
"""Runs the groups of measurements, keeps what they found, and writes Documentation/Performance.md
anew.

Started by Scripts/benchmark, which builds the programs first.
"""

import argparse
import datetime
import json
import pathlib
import subprocess
import sys

sys.dont_write_bytecode = True

import machine  # noqa: E402: beside this file
import page  # noqa: E402
import reports  # noqa: E402

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
RESULTS = PROJECT / "Benchmarks/Results"


def parse_arguments():
    parser = argparse.ArgumentParser(prog="benchmark", description=__doc__.splitlines()[0])
    parser.add_argument(
        "--json", action="store_true", help="print what was measured as JSON in place of tables"
    )
    parser.add_argument(
        "--quick", action="store_true", help="only show that everything runs; keep nothing"
    )
    parser.add_argument("--commands", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument(
        "groups", nargs="*", metavar="NAME", help="groups to measure; without names all of them"
    )
    return parser.parse_args()


def choose_groups(available, wanted):
    """The commands of the wanted groups, or of all, by name."""
    unknown = [name for name in wanted if name not in available]
    if unknown:
        sys.exit(
            f"benchmark: no group {', '.join(unknown)}; there are {', '.join(sorted(available))}"
        )
    return {name: available[name] for name in sorted(wanted or available)}


def run_group(name, command, quick):
    options = ["--json", "--quick"] if quick else ["--json"]
    print(f"==> Measuring {name}", file=sys.stderr, flush=True)
    finished = subprocess.run(
        [*command, *options], cwd=PROJECT, stdout=subprocess.PIPE, text=True, check=False
    )
    if finished.returncode != 0:
        raise reports.BadReport(f"{name}: its program ended with status {finished.returncode}")
    return reports.parse(name, finished.stdout)


def rounded(value):
    """Six digits are more than any measurement is good for."""
    if isinstance(value, dict):
        return {key: rounded(inner) for key, inner in value.items()}
    if isinstance(value, list):
        return [rounded(inner) for inner in value]
    return float(f"{value:.6g}") if isinstance(value, float) else value


def keep(report):
    RESULTS.mkdir(exist_ok=True)
    text = json.dumps(rounded(report), indent=1, ensure_ascii=False)
    (RESULTS / f"{report['group']}.json").write_text(text + "\n", encoding="utf-8")


def main():
    arguments = parse_arguments()
    available = {path.name: path.read_text().splitlines() for path in arguments.commands.iterdir()}
    measured, failures = [], []
    for name, command in choose_groups(available, arguments.groups).items():
        conditions = {"date": datetime.date.today().isoformat(), **machine.describe()}
        try:
            report = run_group(name, command, arguments.quick)
        except reports.BadReport as failure:
            failures.append(name)
            print(f"benchmark: {failure}", file=sys.stderr)
            continue
        report["conditions"] = conditions
        measured.append(report)
        if not arguments.quick:
            keep(report)
        if not arguments.json:
            print(f"{report['title']}\n{reports.plain_table(report)}\n", flush=True)
    if arguments.json:
        print(json.dumps(measured, indent=1, ensure_ascii=False))
    if not arguments.quick:
        page.write(
            PROJECT,
            [json.loads(path.read_text("utf-8")) for path in sorted(RESULTS.glob("*.json"))],
        )
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
