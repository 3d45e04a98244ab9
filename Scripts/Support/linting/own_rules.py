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


# The ways of C and C++ to standard output and standard error. NSLog is none of them: korvo sends
# its log through Terminal, by whomever it is written.
PRINTING = re.compile(
    r"\b(?:std::)?(?:w?cout|w?cerr|w?clog|ostream_iterator)\b"
    r"|\b(?:std::)?v?(?:f|d)?w?printf\b|\bstd::v?print\w*|#include <(?:iostream|print)>"
    r"|\b(?:std::)?(?:puts|fputs|fputc|putc|putchar|fwrite|perror|psignal)\s*\("
    r"|\bSTD(?:OUT|ERR)_FILENO\s*,|\bwritev?\s*\(\s*[12]\s*,|\bfileHandleWithStandard"
    r"|\b_NSLog_printf_handler\b|\bstd(?:out|err)\b"
)
WHERE_PRINTING_IS = "StandIns/Terminal/Output.cpp"
WHERE_THE_LOG_IS_SENT = "StandIns/Korvo/Application/LogOutput.mm"
# Its line is its own to the last byte, and no library is there yet.
BEFORE_ANY_LIBRARY = "StandIns/Korvo/Application/BeforeGNUstep.cpp"


def printing(project):
    """What a program prints may hold names and texts of others."""
    for path in project.ending(".cpp", ".h", ".mm", ".m"):
        if not path.startswith(("StandIns/", "Tools/")):
            continue
        if path in (WHERE_PRINTING_IS, WHERE_THE_LOG_IS_SENT, BEFORE_ANY_LIBRARY):
            continue
        source = without_comments(project.read(path))
        for found in PRINTING.finditer(source):
            line = source.count("\n", 0, found.start()) + 1
            reason = f"{found[0].strip()}: a program prints by StandIns/Terminal/Output.h only"
            yield Finding(path, line, reason, "printing")


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
    yield from printing(project)
