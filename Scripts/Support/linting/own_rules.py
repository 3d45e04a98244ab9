"""Rules that no tool has: about the text of a line, whatever the language."""

import re

from .project import Finding

COLUMNS = 100

# GNUstep keeps a timer of several modes until each of them has run, which one may never do.
LEAKING_TIMER = re.compile(
    r"performSelector:.*?afterDelay:.*?inModes:|addTimer:.*?forMode:|CFRunLoopAddTimer", re.DOTALL
)


def long_lines(project):
    """Comments and strings as well, which no formatter breaks."""
    paths = project.cpp + project.javascript + project.python + project.shell + project.cmake
    for path in sorted(paths):
        for number, line in enumerate(project.read(path).split("\n"), 1):
            if len(line) > COLUMNS:
                reason = f"{len(line)} columns; at most {COLUMNS} stay readable side by side"
                yield Finding(path, number, reason, "columns")


def without_comments(source):
    """The source with blanks in place of // comments; every line keeps its number."""
    return re.sub(r"//[^\n]*", "", source)


def leaking_timers(project):
    """Tests may: a program that runs for seconds loses nothing by it."""
    paths = project.ending(".mm", ".m", ".h")
    for path in (each for each in paths if not each.startswith("Tests/")):
        source = without_comments(project.read(path))
        for statement in re.finditer(r"[^;{}]+", source):
            found = LEAKING_TIMER.search(statement[0])
            if found:
                line = source.count("\n", 0, statement.start() + found.start()) + 1
                reason = (
                    "a timer of several run-loop modes leaks in GNUstep; "
                    "use Platform/RunLoopTimer.h"
                )
                yield Finding(path, line, reason, "leaking-timer")


# The markers that git leaves where two changes meet, spelt so that this line is none.
CONFLICT = re.compile(r"^(?:<{7}|>{7}) ")


def conflicts(project):
    """In prose too: no compiler reads it."""
    prose = project.ending(".md", ".txt", ".json", ".plist", ".xib", ".strings")
    for path in sorted(set(prose + project.cpp + project.python + project.shell + project.cmake)):
        for number, line in enumerate(project.read(path).split("\n"), 1):
            if CONFLICT.match(line):
                yield Finding(path, number, "two changes meet here, undecided", "conflict")


def findings(project):
    yield from conflicts(project)
    yield from long_lines(project)
    yield from leaking_timers(project)
