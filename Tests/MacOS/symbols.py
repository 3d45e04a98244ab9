"""The list of macOS's symbols, and the stubs for the linker that are made of it."""

import re
import subprocess
from dataclasses import dataclass, field
from pathlib import Path

LIST = Path(__file__).resolve().parent / "symbols.txt"
PROCESSORS = ("arm64", "x86_64")


class BadList(Exception):
    pass


def version(text):
    return tuple(int(part) for part in text.split("."))


@dataclass
class Symbol:
    name: str
    since: str
    until: str
    processors: tuple

    def is_there(self, oldest_system):
        """Whether every macOS from that one on has it."""
        return version(self.since) <= version(oldest_system) and self.until == "-"


@dataclass
class Library:
    name: str
    file: str
    hands_on: list
    symbols: list = field(default_factory=list)

    @property
    def is_framework(self):
        return ".framework/" in self.file


def read_list(text):
    """The libraries of a list in the form that symbols.txt describes."""
    libraries = []
    for number, line in enumerate(text.splitlines(), 1):
        words = line.split()
        if not words or words[0].startswith("#"):
            continue
        if words[0] == "library" and (len(words) == 3 or words[3:4] == ["also"]):
            libraries.append(Library(words[1], words[2], words[4:]))
        elif libraries and len(words) in (3, 4) and re.fullmatch(r"\d+(\.\d+)+", words[0]):
            libraries[-1].symbols.append(
                Symbol(words[2], words[0], words[1], tuple(words[3:]) or PROCESSORS)
            )
        else:
            raise BadList(f"line {number} is no library and no symbol: {line}")
    return libraries


def stub(library, libraries, oldest_system):
    """The text-based stub of the library, as a linker reads it: with the symbols alone that can be
    counted on from the oldest system on."""
    lines = [
        "--- !tapi-tbd",
        "tbd-version: 4",
        "targets: [ " + ", ".join(f"{processor}-macos" for processor in PROCESSORS) + " ]",
        f"install-name: '{library.file}'",
    ]
    if library.hands_on:
        files = [f"'{other.file}'" for other in libraries if other.name in library.hands_on]
        lines += ["reexported-libraries:"] + [
            f"  - targets: [ {processor}-macos ]\n    libraries: [ {', '.join(files)} ]"
            for processor in PROCESSORS
        ]
    exports = []
    for processor in PROCESSORS:
        names = [
            f"'{symbol.name}'"
            for symbol in library.symbols
            if processor in symbol.processors and symbol.is_there(oldest_system)
        ]
        if names:
            exports.append(
                f"  - targets: [ {processor}-macos ]\n    symbols: [ {', '.join(names)} ]"
            )
    if exports:
        lines += ["exports:"] + exports
    return "\n".join(lines + ["...", ""])


def spellings(name):
    """How a linker may write a symbol: as it is, without the underline of C's names, or in C++."""
    readable = subprocess.run(
        ["/usr/lib/llvm-19/bin/llvm-cxxfilt", name.removeprefix("_")],
        check=True,
        text=True,
        capture_output=True,
    ).stdout.strip()
    return {name, name.removeprefix("_"), readable}


def why_missing(name, libraries, oldest_system):
    """Why the linker does not find a symbol, in one line."""
    for library in libraries:
        for symbol in library.symbols:
            if name not in spellings(symbol.name):
                continue
            if symbol.until != "-":
                return f"{name}: in {library.name} until macOS {symbol.until} only"
            if not symbol.is_there(oldest_system):
                since = f"in {library.name} since macOS {symbol.since} only"
                return f"{name}: {since}, and {oldest_system} has to do"
            return f"{name}: in {library.name}, which is not linked or has it for another processor"
    return f"{name}: not listed in {LIST.name} as a symbol of macOS"


def explain(linker_says, libraries, oldest_system):
    """Why each symbol that the linker calls undefined is so, in a line each."""
    names = sorted(set(re.findall(r"undefined symbol(?: for arch \w+)?: (.+)", linker_says)))
    return [why_missing(name, libraries, oldest_system) for name in names]
