"""A copy of the project in which mutants are built and tested, one after the other.

The user's own files are read and never written. The copy keeps the times of its files, so that a
second run builds only what changed since.
"""

import hashlib
import json
import math
import os
import shlex
import shutil
import signal
import subprocess
import time
from enum import Enum
from pathlib import Path

# What a mutant may claim, so that one that runs away does not take the machine with it.
MEMORY_KIB = 4 * 1024 * 1024
BUILD_SECONDS = 600
# A test may take this much longer than the original took, in processor time: that grows little on a
# busy machine. Seconds by the clock are for a mutant that waits for ever; they count only while
# nothing of it could run, because on a busy machine what could run has to wait as well.
PATIENCE = 4
LEAST_PROCESSOR_SECONDS = 3
WAITING_SECONDS = 60
SLICE_SECONDS = 0.5
# The quick tests of a program are those that take no more than this part of its time together.
QUICK_SHARE = 0.1

OPTIONS = [
    "-DCMAKE_BUILD_TYPE=Release",
    # A mutant may well leave a variable unused: it is for the tests to notice, not for the
    # warnings.
    *(f"-DCMAKE_{language}_FLAGS_RELEASE=-O1 -w" for language in ("C", "CXX", "OBJC", "OBJCXX")),
    # For quick links. Newer binutils come without it.
    *(
        f"-DCMAKE_{kind}_LINKER_FLAGS=-fuse-ld=gold"
        for kind in ("EXE", "MODULE")
        if shutil.which("ld.gold")
    ),
    *(f"-DCMAKE_{language}_COMPILER_LAUNCHER=" for language in ("C", "CXX", "OBJC", "OBJCXX")),
]


class WorkshopError(Exception):
    pass


class TimeIsUp(Exception):
    pass


class Deadline:
    """When everything has to end: after some seconds, or at once when someone says so."""

    def __init__(self, seconds):
        self._end = time.monotonic() + seconds

    def end_now(self):
        self._end = time.monotonic()

    def check(self):
        if time.monotonic() >= self._end:
            raise TimeIsUp


class End(Enum):
    """How a command ended."""

    WELL = "with status 0"
    BADLY = "with another one, or by a signal"
    NEVER = "had to be ended"


def can_run(session):
    """Whether a thread of the session could use a processor if it got one."""
    for process in Path("/proc").iterdir():
        if process.name.isdigit():
            try:
                # Behind the name in brackets: state, parent, group, session.
                if int(behind_name(process / "stat")[3]) == session and any(
                    behind_name(thread / "stat")[0] in "RD"
                    for thread in (process / "task").iterdir()
                ):
                    return True
            except (FileNotFoundError, ProcessLookupError):
                pass
    return False


def behind_name(stat):
    return stat.read_text(errors="replace").rpartition(")")[2].split()


def quickest_first(seconds):
    """The names of tests, as filters: the quick ones, then the others."""
    whole, spent, quick = sum(seconds.values()), 0.0, []
    for name in sorted(seconds, key=seconds.get):
        spent += seconds[name]
        if spent > QUICK_SHARE * whole:
            break
        quick.append(name)
    names = ":".join(quick)
    return [names, "-" + names] if quick else ["*"]


def copy_project(project, copy):
    """Makes the copy equal to the project, without touching what is equal already."""

    def passed_over(directory, names):
        return [
            name
            for name in names
            if name in (".git", "node_modules", "__pycache__")
            or name.startswith("build")
            and Path(directory) == project
        ]

    wanted = set()
    for directory, folders, files in os.walk(project):
        folders[:] = [name for name in folders if name not in passed_over(directory, folders)]
        for name in files:
            source = Path(directory) / name
            if name in passed_over(directory, [name]):
                continue
            target = copy / source.relative_to(project)
            wanted.add(target)
            if not target.is_file() or source.read_bytes() != target.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(source, target)
                shutil.copymode(source, target)
    for directory, _, files in os.walk(copy):
        for name in files:
            if Path(directory) / name not in wanted:
                (Path(directory) / name).unlink()


class Workshop:
    def __init__(self, project, directory, deadline):
        self.copy = directory / "source"
        self.build = directory / "build"
        self.deadline = deadline
        self._tests = {}
        self._command = None  # how the file at work is compiled; none for a header
        self._original_code = None
        copy_project(project, self.copy)
        modules = Path("StandIns/Korvo/JavaScript/node_modules")
        if (project / modules).is_dir() and not (self.copy / modules).exists():
            (self.copy / modules).symlink_to(project / modules)
        self._must(
            ["cmake", "-S", self.copy, "-B", self.build, "-G", "Ninja", *OPTIONS], "configure"
        )
        commands = json.loads((self.build / "compile_commands.json").read_text())
        self._commands = {command["file"]: command for command in commands}

    def prepare(self, tests, file):
        """Builds the original, and sees each test program pass: only then a failure means
        anything."""
        self._must(["ninja", "-C", self.build, *tests], "build")
        for test in tests:
            if test not in self._tests:
                self._tests[test] = self._measured(test)
        self._command = self._commands.get(str(self.copy / file))
        self._original_code = self._code()

    def _measured(self, test):
        report = self.build / f"{test}.json"
        timed = ["bash", "-c", 'TIMEFORMAT=%U; time "$@"', "timed"]
        run = [self.build / "bin" / test, "--gtest_brief=1", f"--gtest_output=json:{report}"]
        self._must([*timed, *run], "run of " + test)
        used = float((self.build / "said.log").read_text(errors="replace").split()[-1])
        seconds = {
            f"{suite['name']}.{case['name']}": float(case["time"].rstrip("s"))
            for suite in json.loads(report.read_text())["testsuites"]
            for case in suite["testsuite"]
        }
        return quickest_first(seconds), max(LEAST_PROCESSOR_SECONDS, math.ceil(PATIENCE * used))

    def try_mutant(self, mutant, tests):
        """What became of it: "refused" by the compiler, "same code", "caught", "timed out" or
        "survived".

        The file must be the one that was prepared last.
        """
        path = self.copy / mutant.file
        original = path.read_bytes()
        try:
            return self._try_mutant(mutant, path, original, tests)
        finally:
            path.write_bytes(original)

    def _try_mutant(self, mutant, path, original, tests):
        path.write_bytes(mutant.apply(original.decode()).encode())
        # Most fall to the first program. What depends on a header is known when all are built.
        built = tests[:1] if self._command else tests
        if not self._builds(built):
            return "refused"
        if self._code() == self._original_code:
            return "same code"
        # Most fall at once to one of many quick tests: the slow ones wait until all of these have
        # run.
        for turn in range(2):
            for test in tests:
                filters, seconds = self._tests[test]
                if turn < len(filters):
                    if turn == 0 and test not in built and not self._builds([test]):
                        return "refused"
                    end = self._end_of_test(test, filters[turn], seconds)
                    if end != End.WELL:
                        return "caught" if end == End.BADLY else "timed out"
        return "same code" if self._same_when_optimized(path, original) else "survived"

    def _builds(self, tests):
        return self._succeeds(["ninja", "-C", self.build, *tests])

    def _end_of_test(self, test, names, seconds):
        """A failure counts if it repeats: it could have been the machine's."""
        command = [
            self.build / "bin" / test,
            "--gtest_brief=1",
            "--gtest_fail_fast",
            "--gtest_filter=" + names,
        ]
        end = self._end(command, seconds)
        return self._end(command, seconds) if end == End.BADLY else end

    def _code(self):
        """What the file at work compiles to; for a header, all that may depend on it."""
        objects = [self._object()] if self._command else sorted(self.build.rglob("*.o"))
        digest = hashlib.sha256()
        for object_file in objects:
            digest.update(object_file.read_bytes())
        return digest.digest()

    def _words(self):
        return shlex.split(self._command["command"])

    def _object(self):
        words = self._words()
        return self.build / words[words.index("-o") + 1]

    def _same_when_optimized(self, path, original):
        if not self._command:
            return False
        words = ["-O2" if word == "-O1" else word for word in self._words()]
        output = self.build / "Optimized.object"
        words[words.index("-o") + 1] = str(output)
        mutated = path.read_bytes()
        codes = []
        for text in (mutated, original):
            path.write_bytes(text)
            if not self._succeeds(words):
                return False
            codes.append(output.read_bytes())
        return codes[0] == codes[1]

    def _must(self, command, what):
        if not self._succeeds(command):
            raise WorkshopError(
                f"the unchanged project fails: {what}; all it said is in {self.build / 'said.log'}"
            )

    def _succeeds(self, command):
        return self._end(command, BUILD_SECONDS) == End.WELL

    def _end(self, command, processor_seconds):
        """How the command ended. What it started ends with it."""
        self.deadline.check()
        self.build.mkdir(parents=True, exist_ok=True)
        limits = f'ulimit -c 0; ulimit -v {MEMORY_KIB}; ulimit -t {processor_seconds}; exec "$@"'
        with open(self.build / "said.log", "wb") as said:
            process = subprocess.Popen(
                ["bash", "-c", limits, "limited", *map(str, command)],
                cwd=self.build,
                stdin=subprocess.DEVNULL,
                stdout=said,
                stderr=subprocess.STDOUT,
                start_new_session=True,
            )
            try:
                return self._awaited(process)
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()

    def _awaited(self, process):
        waited = 0.0
        while waited < WAITING_SECONDS:
            try:
                status = process.wait(SLICE_SECONDS)
                # This is how the system ends who has used up its processor time.
                ran_out_of_time = status in (-signal.SIGKILL, -signal.SIGXCPU)
                return End.NEVER if ran_out_of_time else End.WELL if status == 0 else End.BADLY
            except subprocess.TimeoutExpired:
                self.deadline.check()
                if not can_run(process.pid):
                    waited += SLICE_SECONDS
        return End.NEVER
