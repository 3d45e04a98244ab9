"""Mutants that no test can notice, each with the reason.

A file of stanzas, separated by empty lines:

    Formats/File.cpp
      the line before, with two blanks, where the next one alone could be one of several
    - the line as it is
    + the line as the mutant has it; there may be several
    Why nobody can tell the difference. As many lines as it takes.

Lines are compared with their blanks squeezed, and without their numbers.
"""

from dataclasses import dataclass

from .mutants import squeezed


@dataclass(frozen=True)
class Explanation:
    file: str
    context: str  # empty for any line before
    before: str
    afters: tuple
    reason: str


def read_explanations(path):
    explanations = []
    for stanza in path.read_text(encoding="utf-8").split("\n\n"):
        lines = [line for line in stanza.splitlines() if line.strip() and not line.startswith("#")]
        if not lines:
            continue
        contexts = [lines.pop(1)] if lines[1:] and lines[1].startswith("  ") else []
        afters = tuple(squeezed(line[2:]) for line in lines if line.startswith("+ "))
        reason = " ".join(" ".join(lines[2 + len(afters) :]).split())
        if len(lines) < 4 or not lines[1].startswith("- ") or not afters or not reason:
            raise ValueError(
                f"{path}: a stanza is a file, a line with -, lines with + and a reason: {lines[0]}"
            )
        context = squeezed(contexts[0]) if contexts else ""
        explanations.append(
            Explanation(lines[0].strip(), context, squeezed(lines[1][2:]), afters, reason)
        )
    return explanations


def find_explanation(explanations, mutant):
    for explanation in explanations:
        if (explanation.file, explanation.before) == (mutant.file, mutant.before):
            if mutant.after in explanation.afters and explanation.context in ("", mutant.context):
                return explanation
    return None
