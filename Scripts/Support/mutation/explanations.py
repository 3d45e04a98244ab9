"""Mutants that no test can notice, each with the reason.

A file of stanzas, separated by empty lines:

    Formats/File.cpp
    - the line as it is
    + the line as the mutant has it
    Why nobody can tell the difference. As many lines as it takes.

Lines are compared with their blanks squeezed, and without their numbers.
"""

from dataclasses import dataclass


@dataclass(frozen=True)
class Explanation:
    file: str
    before: str
    after: str
    reason: str


def read_explanations(path):
    explanations = []
    for stanza in path.read_text(encoding="utf-8").split("\n\n"):
        lines = [line for line in stanza.splitlines() if line.strip() and not line.startswith("#")]
        if not lines:
            continue
        if len(lines) < 4 or not lines[1].startswith("- ") or not lines[2].startswith("+ "):
            raise ValueError(f"{path}: a stanza is a file, a line with -, a line with + and a reason: {lines[0]}")
        explanations.append(
            Explanation(lines[0].strip(), squeeze(lines[1][2:]), squeeze(lines[2][2:]), squeeze(" ".join(lines[3:])))
        )
    return explanations


def squeeze(text):
    return " ".join(text.split())


def find_explanation(explanations, mutant):
    wanted = (mutant.file, mutant.before, mutant.after)
    for explanation in explanations:
        if (explanation.file, explanation.before, explanation.after) == wanted:
            return explanation
    return None
