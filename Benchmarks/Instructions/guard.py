#!/usr/bin/python3
"""Counts the instructions of the jobs under callgrind and compares them with those recorded.

Status 0 where no job takes more than five percent above its recorded count, 1 where one does, and
77 (not comparable) where compiler, libraries or valgrind are not those that its counts were
recorded with. With --renew the counts are recorded anew.

Instructions do not depend on how busy or how fast a machine is, but the C library chooses
between variants of memcpy and the like by what the processor can do. So it is told to take those
that every processor has, and the sizes that it derives from the caches are given. The rest of
the code is compiled for any x86-64.
"""

import argparse
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "Page"))

import machine  # noqa: E402: in the folder named above

RECORDS = pathlib.Path(__file__).resolve().parent / "Recorded"
NOT_COMPARABLE = 77
LARGEST_CHANGE = 5  # percent

FEATURES = (
    "AVX512F",
    "AVX512VL",
    "AVX512BW",
    "AVX2",
    "AVX",
    "BMI1",
    "BMI2",
    "LZCNT",
    "MOVBE",
    "POPCNT",
    "RTM",
    "ERMS",
    "FSRM",
    "AVX_Fast_Unaligned_Load",
    "Fast_Unaligned_Load",
    "Fast_Unaligned_Copy",
    "Fast_Copy_Backward",
    "Fast_Rep_String",
    "SSE4_2",
    "SSE4_1",
    "SSSE3",
    "FMA",
    "FMA4",
    "XSAVE",
    "XSAVEC",
)
TUNABLES = {
    "glibc.cpu.hwcaps": ",".join("-" + feature for feature in FEATURES),
    "glibc.cpu.x86_data_cache_size": "32768",
    "glibc.cpu.x86_shared_cache_size": "1048576",
    "glibc.cpu.x86_non_temporal_threshold": "0xc0000",
}
# Variants for better processors, by how the C library names them. Not the one for filling: in newer
# releases the plain one goes on in its middle.
CHOSEN_VARIANT = re.compile(
    r"(?!__memset_sse2_unaligned_erms\b)"
    r"__(?:mem|str|wcs|wmem|stp)\w*_(?:avx\w*|evex\w*|sse4\w*|ssse3\w*|\w*erms)\b"
)


class Failed(Exception):
    """One line for whoever started it."""


def environment():
    """Little of the surroundings: each variable moves the stack."""
    kept = {
        name: os.environ[name] for name in ("PATH", "HOME", "LD_LIBRARY_PATH") if name in os.environ
    }
    return {
        **kept,
        "LC_ALL": "C.UTF-8",
        "GLIBC_TUNABLES": ":".join(f"{name}={value}" for name, value in TUNABLES.items()),
    }


def record_of(compiler):
    """Where the counts of a compiler are kept: each of its yearly releases makes other code."""
    return RECORDS / f"gcc-{compiler.partition('.')[0]}.json"


def toolchain():
    """What the counts depend on beside our code."""
    valgrind = subprocess.run(
        ["valgrind", "--version"], capture_output=True, text=True, check=True
    ).stdout.strip()
    packages = {
        "glibc": "libc6",
        "libstdc++": "libstdc++6",
        "libobjc": "libobjc4",
        "GNUstep base": "libgnustep-base1.*",
        "SQLite": "libsqlite3-0",
        "ICU": "libicu[0-9]*",
        "systemd (sd-bus)": "libsystemd0",
    }
    return {
        "GCC": machine.compiler_version(),
        "valgrind": valgrind.removeprefix("valgrind-"),
        **{name: machine.package_version(package) for name, package in packages.items()},
    }


def count_in(profile):
    """The name that a dump was made under, and its count."""
    text = profile.read_text(encoding="utf-8", errors="replace")
    variant = CHOSEN_VARIANT.search(text)
    if variant:
        raise Failed(f"{variant.group()} was called: the counts would depend on the processor")
    name = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
    total = re.search(r"^(?:totals|summary): (\d+)", text, re.MULTILINE)
    return (name.group(1), int(total.group(1))) if name and total else None


def count_instructions(program):
    with tempfile.TemporaryDirectory(prefix="instruction-counts-") as directory:
        output = pathlib.Path(directory) / "callgrind"
        command = [
            "valgrind",
            "--tool=callgrind",
            "--instr-atstart=no",
            f"--callgrind-out-file={output}",
            program,
        ]
        finished = subprocess.run(
            command, env=environment(), capture_output=True, text=True, check=False
        )
        if finished.returncode != 0:
            raise Failed(
                f"{program} ended with status {finished.returncode} under valgrind: "
                f"{finished.stderr[-2000:]}"
            )
        counts = dict(filter(None, map(count_in, sorted(pathlib.Path(directory).iterdir()))))
    if not counts:
        raise Failed(f"valgrind left no counts of {program}")
    return counts


def report(recorded, counts):
    """Prints each job with its change; returns the lines that say what is wrong."""
    wrong = []
    for name in sorted(recorded.keys() | counts.keys()):
        if name not in counts or name not in recorded:
            where = (
                "recorded, but is not counted any more"
                if name in recorded
                else "counted, but not recorded"
            )
            wrong.append(f"{name} is {where}")
            continue
        change = counts[name] / recorded[name] - 1
        print(f"{counts[name]:13,} {change:+7.1%}  {name}")
        if 100 * counts[name] > (100 + LARGEST_CHANGE) * recorded[name]:
            wrong.append(
                f"{name} takes {change:.1%} more instructions: {counts[name]:,}, "
                f"recorded {recorded[name]:,}"
            )
        elif 100 * counts[name] < (100 - LARGEST_CHANGE) * recorded[name]:
            print(f"{'':21}  {-change:.1%} fewer: renew the counts, so that this is not lost again")
    return wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", help="the program InstructionCounts of the release build")
    parser.add_argument(
        "--renew", action="store_true", help="record the counts in place of those recorded"
    )
    arguments = parser.parse_args()
    tools = toolchain()
    path = record_of(tools["GCC"])
    record = (
        json.loads(path.read_text(encoding="utf-8"))
        if path.exists()
        else {"toolchain": {}, "counts": {}}
    )
    if not arguments.renew and record["toolchain"] != tools:
        others = ", ".join(
            f"{name} {version} (recorded with {record['toolchain'].get(name, 'none')})"
            for name, version in tools.items()
            if record["toolchain"].get(name) != version
        )
        print(f"not comparable: {others}")
        sys.exit(NOT_COMPARABLE)
    try:
        counts = count_instructions(arguments.program)
    except Failed as failure:
        sys.exit(f"guard: {failure}")
    wrong = report(record["counts"], counts)
    if arguments.renew:
        path.write_text(
            json.dumps({"toolchain": tools, "counts": counts}, indent=1, ensure_ascii=False) + "\n",
            encoding="utf-8",
        )
        return
    if wrong:
        sys.exit(
            "\n".join(
                [
                    *(f"guard: {line}" for line in wrong),
                    "guard: where this is intended, run "
                    "Scripts/benchmark --renew-instruction-counts",
                ]
            )
        )


if __name__ == "__main__":
    main()
