"""HardeningTest.py BUILD PROGRAM… [-- TEST…]: whether what was built is hardened, as
CMake/Hardening.cmake wants it, and whether a program that lacks something of it would be noticed.
"""

import json
import os
import platform
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
X86 = platform.machine() == "x86_64"

SPLIT = sys.argv.index("--") if "--" in sys.argv else len(sys.argv)
BUILD = Path(sys.argv[1])
PROGRAMS = [Path(path) for path in sys.argv[2:SPLIT]]
TESTS = sys.argv[SPLIT + 1 :]

# What every source is compiled with.
FLAGS = ["-fstack-protector-strong", "-fstack-clash-protection"]
if X86:
    FLAGS.append("-fcf-protection=full")
OPTIMISED = "-D_FORTIFY_SOURCE=2"


def output(*command):
    environment = {**os.environ, "LC_ALL": "C"}
    finished = subprocess.run(command, env=environment, capture_output=True, text=True, check=True)
    return finished.stdout


def has_landing_places(program):
    """Whether every function that others reach by name begins with one: main, and what a library
    exports."""
    code = output("objdump", "--disassemble", "--no-show-raw-insn", "--section=.text", program)
    symbols = output("readelf", "--wide", "--symbols", program)
    named = r" FUNC +GLOBAL +(?:DEFAULT|PROTECTED) +\d+ (?!_start)([\w.]+)"
    functions = set(re.findall(named, symbols))
    beginnings = dict(re.findall(r"<([\w.]+)>:\n *[0-9a-f]+:\t(\w+)", code))
    return functions and all(beginnings.get(each, "endbr64") == "endbr64" for each in functions)


def faults(program):
    """What the program lacks, in words."""
    read = output("readelf", "--wide", "--headers", "--dynamic", "--notes", program)
    found = []

    def want(held, fault):
        if not held:
            found.append(fault)

    want("Type:                              DYN" in read, "its addresses are fixed")
    if "[Requesting program interpreter" in read:
        want(re.search(r"Flags:.* PIE", read), "its addresses are fixed")
    want(re.search(r"^ +GNU_RELRO ", read, re.M), "its tables of addresses stay writable")
    want(re.search(r"Flags:.* NOW", read), "its tables are filled when they are used")
    stack = re.search(r"^ +GNU_STACK( +0x\w+){5} +(\w+)", read, re.M)
    want(stack and "E" not in stack[2], "its stack can hold code")
    want(not re.search(r"^ +LOAD( +0x\w+){5} +RWE", read, re.M), "it has memory to write and run")
    for paths in re.findall(r"\((?:RUNPATH|RPATH)\).*\[(.*)\]", read):
        for path in paths.split(":"):
            want(path.startswith("$ORIGIN"), f"it looks for libraries in {path or 'any folder'}")
    want(
        "__stack_chk_fail" in output("readelf", "--wide", "--dyn-syms", program),
        "its stack is not watched",
    )
    if X86:
        want("SHSTK" in read, "its returns may not be watched")
        want(has_landing_places(program), "its jumps have no landing places")
    return found


class Hardening(unittest.TestCase):
    def test_every_program_the_library_and_the_bundle_are_hardened(self):
        self.assertGreaterEqual(len(PROGRAMS), 5)
        for program in PROGRAMS:
            with self.subTest(program=program.name):
                self.assertEqual(faults(program), [])

    def test_every_source_is_compiled_with_the_flags(self):
        text = (BUILD / "CMakeCache.txt").read_text(encoding="utf-8")
        optimised = "CMAKE_BUILD_TYPE:STRING=RelWithDebInfo" in text
        sanitized = "KORVO_SANITIZE:BOOL=ON" in text
        wanted = FLAGS + ([OPTIMISED] if optimised and not sanitized else [])
        commands = json.loads((BUILD / "compile_commands.json").read_text(encoding="utf-8"))
        ours = [each for each in commands if Path(each["file"]).is_relative_to(PROJECT)]
        self.assertGreater(len(ours), 100)
        for command in ours:
            words = command["command"].split()
            missing = [flag for flag in wanted if flag not in words]
            self.assertEqual(missing, [], command["file"])

    def test_a_program_that_lacks_something_is_noticed(self):
        source = "int main(int c, char **v) { char a[64]; for (int i = 0; i < c; ++i) a[i] = **v;"
        source += " return a[c & 1]; }\n"
        hardened = ["-O1", *FLAGS, "-fPIE", "-pie", "-Wl,-z,relro,-z,now,-z,noexecstack"]
        lacking = {
            "": [],
            "its addresses are fixed": ["-no-pie"],
            "its tables of addresses stay writable": ["-Wl,-z,norelro"],
            "its tables are filled when they are used": ["-Wl,-z,lazy"],
            "its stack can hold code": ["-Wl,-z,execstack"],
            "it looks for libraries in /usr/tmp": ["-Wl,--enable-new-dtags,-rpath,/usr/tmp"],
            "its stack is not watched": ["-fno-stack-protector"],
        }
        if X86:
            lacking["its jumps have no landing places"] = ["-fcf-protection=none"]
            lacking = {fault: [*options, "-Wl,-z,shstk"] for fault, options in lacking.items()}
            lacking["its returns may not be watched"] = []
        with tempfile.TemporaryDirectory() as directory:
            for fault, options in lacking.items():
                with self.subTest(fault=fault):
                    program = Path(directory) / "program"
                    command = ["gcc", "-x", "c", "-", "-o", program, *hardened, *options]
                    subprocess.run(command, input=source, text=True, check=True)
                    found = faults(program)
                    self.assertEqual(fault in found, bool(fault), found)
                    if not fault:
                        self.assertEqual(found, [])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *TESTS])
