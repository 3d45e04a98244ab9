#!/usr/bin/python3
"""How long korvo takes to be ready, and what it holds while it waits, beside a program that only
has a window.

The programs take turns, so that what else the machine does touches all alike. Each is started
with its files in the page cache, as they are after the first start. Needs a display and a bus:
Scripts/with-desktop.
"""

import argparse
import contextlib
import json
import pathlib
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True
sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "WaitingTime"))

import library  # noqa: E402: in the folder named above
import programs  # noqa: E402

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
SEED = 2026
MOST_MILLISECONDS = 500
PATIENCE = 30  # seconds
SETTLE = 1.0  # seconds after which a program that is ready counts as idle
TIMES, PROCESSOR_TIMES = "Time from start to ready", "Processor time from start to ready"
BARE = "bare AppKit program"
MEMORY = "Memory while idle"


@contextlib.contextmanager
def started(command):
    """The process, once it is ready, with the milliseconds until then, of time and of processor
    time."""
    begin = time.monotonic()
    with subprocess.Popen(
        command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True
    ) as process:
        try:
            if process.stdout.readline().strip() != "ready":
                sys.exit(f"measure: {command[0]} did not become ready")
            yield process, (time.monotonic() - begin) * 1e3, processor_time_of(process)
        finally:
            process.send_signal(signal.SIGTERM)
            try:
                process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                process.kill()
                sys.exit(f"measure: {command[0]} did not end when it was told to")


def processor_time_of(process):
    """Milliseconds of all its threads."""
    threads = pathlib.Path(f"/proc/{process.pid}/task").glob("*/schedstat")
    return sum(int(thread.read_text().split()[0]) for thread in threads) / 1e6


def memory_of(process):
    """MiB: with the shared pages, and with the process's share of them."""
    fields = {}
    for line in pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text().splitlines()[1:]:
        name, value, *_ = line.split()
        fields[name] = int(value) / 1024
    return fields["Rss:"], fields["Pss:"]


def sample(values, unit):
    quarters = (
        statistics.quantiles(values, n=4, method="inclusive")
        if len(values) > 1
        else [values[0]] * 3
    )
    return {
        "median": quarters[1],
        "unit": unit,
        "spread": quarters[2] - quarters[0],
        "repetitions": len(values),
    }


def measure_starts(commands, repetitions):
    times = {name: [] for name in commands}
    processor_times = {name: [] for name in commands}
    for repetition in range(repetitions + 1):
        for name, command in commands.items():
            with started(command) as (_, milliseconds, processor_milliseconds):
                if repetition > 0:  # the first fills the page cache
                    times[name].append(milliseconds)
                    processor_times[name].append(processor_milliseconds)
    return [
        {"plot": title, "name": name, **sample(values, "ms")}
        for title, all_values in ((TIMES, times), (PROCESSOR_TIMES, processor_times))
        for name, values in all_values.items()
    ]


def measure_memory(commands):
    rows = []
    for name, command in commands.items():
        with started(command) as (process, _, _):
            time.sleep(SETTLE)
            resident, share = memory_of(process)
        rows.append(
            {"plot": MEMORY, "name": f"{name}: resident", "median": resident, "unit": "MiB"}
        )
        rows.append({"plot": MEMORY, "name": f"{name}: of its own", "median": share, "unit": "MiB"})
    return rows


def measure_bundle(bundle, directory):
    """Without what only a debugger reads."""
    stripped = directory / bundle.name
    shutil.copytree(bundle, stripped)
    subprocess.run(["strip", stripped / "KorvoMellelPlugin"], check=True)
    files = [path for path in stripped.rglob("*") if path.is_file()]
    code = (stripped / "KorvoMellelPlugin").stat().st_size
    return [
        {
            "name": "the bundle, stripped",
            "median": sum(path.stat().st_size for path in files) / 1024,
            "unit": "KiB",
        },
        {"name": "of which code", "median": code / 1024, "unit": "KiB"},
    ]


def make_database(binaries, directory, size):
    source, database = directory / f"{size}.json", directory / f"{size}.korvo"
    references = library.make_library(PROJECT / "Examples/library.bib", size, SEED)
    source.write_text(json.dumps(references, ensure_ascii=False))
    programs.import_library(binaries, source, database)
    return database


def beyond_bare(rows, name):
    """What is korvo's own; of processor time as well, which depends less on what else the
    machine does."""
    for title, what, aim in (
        (TIMES, "", {"aim": MOST_MILLISECONDS, "aimIs": "most"}),
        (PROCESSOR_TIMES, ", processor time", {}),
    ):
        medians = {row["name"]: row["median"] for row in rows if row["plot"] == title}
        yield {
            "name": f"{name}, beyond the bare program{what}",
            "median": medians[name] - medians[BARE],
            "unit": "ms",
            **aim,
        }


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument(
        "--json", action="store_true", help="accepted as of every measuring program; always done"
    )
    parser.add_argument("--quick", action="store_true")
    arguments = parser.parse_args()
    binaries = arguments.build / "bin"
    sizes = (100, 1000) if arguments.quick else (100, 100_000)
    with tempfile.TemporaryDirectory(prefix="korvo-start-") as name:
        directory = pathlib.Path(name)
        commands = {BARE: [binaries / "BareApplication"]}
        for size in sizes:
            commands[f"korvo, {size:,} references"] = [
                binaries / "korvo",
                "--library",
                make_database(binaries, directory, size),
            ]
        starts = measure_starts(commands, 2 if arguments.quick else 15)
        rows = starts + [
            row for name in commands if name != BARE for row in beyond_bare(starts, name)
        ]
        rows += measure_memory(commands)
        rows += measure_bundle(arguments.build / "KorvoMellelPlugin.bundle", directory)
    print(
        json.dumps({"group": "start", "title": "Start and size", "rows": rows}, ensure_ascii=False)
    )


if __name__ == "__main__":
    main()
