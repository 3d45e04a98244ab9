"""clang-tidy over the C++ and Objective-C++ sources.

Most of its time goes into the headers that every source includes. So the sources of one target are
read together, by one source that includes them all. Where two of them cannot be read together, as
both have a local function of the same name, those that do not fit are read in another round."""

import concurrent.futures
import json
import os
import re
import shlex
import subprocess
from dataclasses import dataclass
from pathlib import Path

from .clean import digest
from .project import Finding, LintError

CLANG_TIDY = "clang-tidy-19"
SOURCES = (".cpp", ".mm")
INCLUDE = re.compile(r'^#\s*(?:include|import)\s+(?:"([^"]+)"|<([^>]+/[^>]+)>)', re.MULTILINE)
DIAGNOSTIC = re.compile(
    r"^(/\S[^:\n]*):(\d+):\d+: (?:warning|error): (.*) \[([\w.,-]+)\]$", re.MULTILINE
)
TOGETHER = "Together"
COMPILED_TOGETHER = ".together"
BROKEN = "clang-diagnostic-error"
# Of these, only what changed, even where everything is asked for: with them it would take three
# times as long, and their code reads no document of a user.
ONLY_WHERE_CHANGED = ("Benchmarks/", "Fuzzing/", "Tests/")


@dataclass(frozen=True)
class Command:
    """How a source is compiled. Sources with equal options can be read together."""

    path: str
    language: str
    directory: str
    options: tuple


def objective_c_options():
    """For what g++ compiles with GCC's run time; its headers come last, behind clang's own."""
    compiler = ["g++", "-print-file-name=include"]
    headers = subprocess.run(compiler, capture_output=True, text=True, check=True).stdout.strip()
    return ["-fobjc-runtime=gcc", "-idirafter", headers]


def sources_of(project, entry):
    """The sources of the project that an entry of the build's list compiles. Those of a test are
    compiled some together, by a source that the build makes and that includes them."""
    source = Path(entry["file"])
    if source.parent.suffix == COMPILED_TOGETHER:
        included = [beside for beside, _ in INCLUDE.findall(source.read_text(encoding="utf-8"))]
    else:
        included = [str(source)]
    paths = [os.path.relpath(each, project.root) for each in included]
    return [path for path in paths if path in project.files and Path(path).suffix in SOURCES]


def compile_commands(project, database):
    """What the build says of each source of the project, once a source."""
    objective_c = objective_c_options()
    commands = {}
    for entry in json.loads(Path(database).read_text(encoding="utf-8")):
        paths = [path for path in sources_of(project, entry) if path not in commands]
        if not paths:
            continue
        words = shlex.split(entry["command"])
        options = words[next(i for i, word in enumerate(words) if word.startswith("-")) :]
        output = options.index("-o")
        del options[output : output + 2]
        options = [option for option in options if option not in ("-c", entry["file"])]
        # The compiler's warnings are for the compiler that builds it.
        options.append("-Wno-everything")
        suffix = Path(entry["file"]).suffix
        if suffix == ".mm":
            options += objective_c
        for path in paths:
            commands[path] = Command(path, suffix, entry["directory"], tuple(options))
    return list(commands.values())


class Includes:
    """The project's own files that a source reads; those of packages change with the packages."""

    def __init__(self, project):
        self.project = project
        self.direct = {}

    def of(self, path):
        found, waiting = set(), [path]
        while waiting:
            each = waiting.pop()
            if each not in found:
                found.add(each)
                waiting += self.directly(each)
        return sorted(found)

    def directly(self, path):
        if path not in self.direct:
            folder = Path(path).parent
            named = []
            for beside, by_room in INCLUDE.findall(self.project.read(path)):
                name = os.path.normpath(folder / beside) if beside else by_room
                if (self.project.root / name).is_file():
                    named.append(name)
            self.direct[path] = named
        return self.direct[path]


def changed_files(project):
    """What differs from the commit that this branch left main at."""
    for main in ("origin/main", "main"):
        try:
            base = project.git("merge-base", "HEAD", main).strip()
            break
        except subprocess.CalledProcessError:
            base = "HEAD"
    changed = project.git("diff", "--name-only", base).split("\n")
    return set(changed) | set(project.git("ls-files", "--others", "--exclude-standard").split("\n"))


class Tidy:
    """One run over a list of sources with equal options."""

    def __init__(self, project, commands):
        self.project = project
        self.commands = commands

    def findings(self, name):
        """The findings, and the sources that could not be read together with those before them."""
        directory = self.project.root / "build" / "lint"
        directory.mkdir(parents=True, exist_ok=True)
        first = self.commands[0]
        together = directory / f"{TOGETHER}-{name}{first.language}"
        lines = [f'#include "{self.project.root / each.path}"\n' for each in self.commands]
        together.write_text("// NOLINTBEGIN\n" + "".join(lines) + "// NOLINTEND\n")
        text = self.run(together, first)
        found, broken = set(), set()
        for path, line, reason, rule in DIAGNOSTIC.findall(text):
            path = os.path.relpath(os.path.realpath(path), self.project.root)
            rule = rule.removesuffix(",-warnings-as-errors")
            if rule == BROKEN:
                broken.add(path)
            found.add(Finding(path, int(line), reason, rule))
        if "error: " in text and not found:
            raise LintError(f"{CLANG_TIDY} fails:\n{text[-2000:]}")
        return found, broken

    def run(self, source, command):
        finished = subprocess.run(
            [
                *(CLANG_TIDY, "--quiet", f"--config-file={self.project.root}/.clang-tidy"),
                f"--header-filter=^{re.escape(str(self.project.root))}/",
                *(source, "--", *command.options),
            ],
            cwd=command.directory,
            capture_output=True,
            text=True,
        )
        # Counts of suppressed warnings go to standard error as well as what keeps it from working.
        return finished.stdout + ("" if finished.returncode == 0 else finished.stderr)


def tidy_target(project, commands, name):
    """Findings in sources with equal options, in as many rounds as it takes to read each."""
    found, rounds = set(), 0
    while commands:
        now, broken = Tidy(project, commands).findings(f"{name}-{rounds}")
        rounds += 1
        later = [command for command in commands if command.path in broken]
        if not broken or len(later) == len(commands) or not later:
            # Nothing is broken, or nothing that another round could mend.
            return found | now
        # What follows a clash is not to be relied on: all are read again, in two parts.
        rest = [command for command in commands if command.path not in broken]
        found |= tidy_target(project, rest, f"{name}-{rounds}")
        commands = later
    return found


def findings(project, clean, commands, everything=False):
    version = subprocess.run(
        [CLANG_TIDY, "--version"], capture_output=True, text=True, check=True
    ).stdout
    config = digest(version, project.read(".clang-tidy"), Path(__file__).read_text("utf-8"))
    includes = Includes(project)
    changed = changed_files(project)
    groups, keys = {}, {}
    for command in commands:
        read = includes.of(command.path)
        is_asked_for = everything and not command.path.startswith(ONLY_WHERE_CHANGED)
        if not is_asked_for and changed.isdisjoint(read):
            continue
        texts = [part for each in read for part in (each, project.read(each))]
        keys[command.path] = digest(config, *command.options, *texts)
        if keys[command.path] not in clean:
            kind = command.path.split("/")[0]
            groups.setdefault((command.options, command.language, kind), []).append(command)
    jobs = sorted(groups.values(), key=len, reverse=True)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as threads:
        results = [
            threads.submit(tidy_target, project, job, str(number))
            for number, job in enumerate(jobs)
        ]
        said = set()
        for job, result in zip(jobs, results, strict=True):
            found = result.result()
            yield from sorted(found - said, key=lambda each: (each.path, each.line))
            said |= found
            if not found:
                for command in job:
                    clean.add(keys[command.path])
