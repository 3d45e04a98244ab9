"""Each source as its formatter would have it: clang-format, prettier, ruff."""

import concurrent.futures
import json
import os
import subprocess
import tomllib
from itertools import zip_longest
from pathlib import Path

from .clean import digest
from .project import Finding, LintError

CLANG_FORMAT = "clang-format-19"
OTHERS = Path(__file__).with_name("format.mjs")


def output_of(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout
    except (OSError, subprocess.CalledProcessError) as error:
        raise LintError(f"{command[0]} does not run; Scripts/setup installs it: {error}") from error


def first_difference(source, formatted):
    lines = zip_longest(source.split("\n"), formatted.split("\n"))
    return next(number for number, (is_so, shall_be) in enumerate(lines, 1) if is_so != shall_be)


def unformatted(path, line, formatter):
    return Finding(path, line, f"is not as {formatter} would have it; Scripts/lint --fix", "format")


def write(project, path, text):
    (project.root / path).write_text(text, encoding="utf-8")


def clang_format(project, path):
    return output_of(
        CLANG_FORMAT, f"--style=file:{project.root}/.clang-format", project.root / path
    )


def cpp_findings(project, clean, fix):
    options = digest(output_of(CLANG_FORMAT, "--version"), project.read(".clang-format"))
    keys = {path: digest(options, path, project.read(path)) for path in project.cpp}
    unknown = [path for path, key in keys.items() if key not in clean]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as threads:
        results = threads.map(lambda path: clang_format(project, path), unknown)
        for path, formatted in zip(unknown, results, strict=True):
            source = project.read(path)
            if source == formatted:
                clean.add(keys[path])
            elif fix:
                write(project, path, formatted)
            else:
                yield unformatted(path, first_difference(source, formatted), CLANG_FORMAT)


def other_findings(project, clean, fix):
    """JavaScript and Python, both by packages that the lock file beside format.mjs pins."""
    options = {
        "prettier": json.loads(project.read(".prettierrc.json")),
        "ruff": tomllib.loads(project.read("ruff.toml")),
    }
    lock = OTHERS.with_name("package-lock.json").read_text(encoding="utf-8")
    known = digest(OTHERS.read_text(encoding="utf-8"), lock, json.dumps(options))
    paths = project.javascript + project.python
    keys = {path: digest(known, path, project.read(path)) for path in paths}
    unknown = [path for path, key in keys.items() if key not in clean]
    if not unknown:
        return
    request = json.dumps({"files": unknown, **options})
    finished = subprocess.run(
        ["node", OTHERS], input=request, cwd=project.root, capture_output=True, text=True
    )
    if finished.returncode != 0:
        raise LintError(f"format.mjs fails; Scripts/setup installs its packages: {finished.stderr}")
    for outcome in json.loads(finished.stdout):
        found = list(findings_in(project, outcome, fix))
        yield from found
        if not found:
            clean.add(keys[outcome["path"]])


def findings_in(project, outcome, fix):
    path = outcome["path"]
    if "error" in outcome:
        yield Finding(path, 1, f"cannot be parsed: {outcome['error']}", "format")
        return
    for each in sorted(outcome.get("findings", []), key=lambda each: each["line"]):
        yield Finding(path, each["line"], each["message"], f"ruff {each['code']}")
    source = project.read(path)
    if source != outcome["formatted"]:
        if fix:
            write(project, path, outcome["formatted"])
        else:
            formatter = "prettier" if path in project.javascript else "ruff"
            yield unformatted(path, first_difference(source, outcome["formatted"]), formatter)


def findings(project, clean, fix=False):
    yield from cpp_findings(project, clean, fix)
    yield from other_findings(project, clean, fix)
