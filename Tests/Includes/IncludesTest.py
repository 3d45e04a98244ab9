#!/usr/bin/env python3
"""Who may include from whom, beyond what the build refuses by its include directories: a path with
".." needs no directory, and would lead anywhere."""

import pathlib
import re
import unittest

project = pathlib.Path(__file__).resolve().parents[2]

ROOMS = (
    "Benchmarks",
    "Examples",
    "Formats",
    "Fuzzing",
    "HostContract",
    "Platform",
    "Plugin",
    "StandIns",
    "Tests",
    "Tools",
)
BESIDE_THE_PRODUCT = ("Benchmarks", "Fuzzing", "Tests")
INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*[<"]([^">]+)[">]', re.MULTILINE)


def fault(source, included):
    """What is wrong with that source's including that path; None if nothing is."""
    if ".." in included.split("/"):
        return "climbs out of its folder"
    room, *rest = included.split("/")
    if room not in BESIDE_THE_PRODUCT or len(rest) < 2:
        return None
    if included.startswith("Tests/Support/") and source.split("/")[0] in BESIDE_THE_PRODUCT:
        return None
    own = source.split("/")
    if own[0] not in BESIDE_THE_PRODUCT:
        return f"the product includes from {room}"
    # Tests/Fuzzing are the tests of what Fuzzing itself is made of.
    if own[:2] == ["Tests", "Fuzzing"] and included.startswith("Fuzzing/Support/"):
        return None
    if room != own[0] or (room == "Tests" and rest[0] != own[1]):
        return f"is of {'/'.join([room, rest[0]])}; what is shared stands in Tests/Support"
    return None


def sources():
    for room in ROOMS:
        for path in sorted((project / room).rglob("*")):
            if path.suffix in (".h", ".cpp", ".m", ".mm") and "node_modules" not in path.parts:
                yield path.relative_to(project).as_posix(), path.read_text(encoding="utf-8")


class Includes(unittest.TestCase):
    def test_each_source_includes_only_from_where_it_may(self):
        count = 0
        for name, text in sources():
            for included in INCLUDE.findall(text):
                count += 1
                with self.subTest(source=name, included=included):
                    self.assertIsNone(fault(name, included))
        self.assertGreater(count, 1000, "hardly an include was found")

    def test_wrong_ways_are_noticed(self):
        for name, included in (
            ("Formats/Unicode.cpp", "Tests/Support/Files.h"),
            ("Plugin/KorvoMellelPlugin/TextBridge.mm", "../Formats/Unicode.h"),
            ("Fuzzing/Formats/Unicode.cpp", "Tests/Formats/Payloads.h"),
            ("Benchmarks/Agent/PreparedHost.h", "Fuzzing/Support/Target.h"),
            ("Tests/Korvo/LibraryTest.cpp", "Tests/Formats/Payloads.h"),
            ("Tests/Korvo/LibraryTest.cpp", "Fuzzing/Support/FuzzedData.h"),
            ("Tests/Support/Files.cpp", "Tests/Formats/Payloads.h"),
        ):
            with self.subTest(source=name, included=included):
                self.assertIsNotNone(fault(name, included))

    def test_right_ways_are_let_through(self):
        for name, included in (
            ("Tests/Korvo/LibraryTest.cpp", "Tests/Support/Files.h"),
            ("Fuzzing/Formats/Unicode.cpp", "Tests/Support/ReferenceUnicode.h"),
            ("Tests/Plugin/FinalScanTest.mm", "Support/AgentTest.h"),
            ("Tests/Fuzzing/CorpusFileTest.cpp", "Fuzzing/Support/CorpusFile.h"),
            ("Platform/Bus/BusCarrier.cpp", "sys/socket.h"),
        ):
            with self.subTest(source=name, included=included):
                self.assertIsNone(fault(name, included))


if __name__ == "__main__":
    unittest.main()
