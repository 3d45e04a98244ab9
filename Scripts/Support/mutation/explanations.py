"""Mutants that no test can notice, each with the reason.

A file of stanzas, separated by empty lines:

    Formats/File.cpp
    - the line as it is
    + the line as the mutant has it, or "(any)"; there may be several
    Why nobody can tell the difference. As many lines as it takes.

Lines are compared with their blanks squeezed, and without their numbers. "(any)" is for lines that
tests cannot reach, and for what a line does that they cannot see: it says nothing about the
mutants of the line that they do notice.
"""

from dataclasses import dataclass

ANY = "(any)"


@dataclass(frozen=True)
class Explanation:
    file: str
    before: str
    afters: tuple
    reason: str

    @property
    def is_for_any(self):
        return ANY in self.afters


def read_explanations(path):
    explanations = []
    for stanza in path.read_text(encoding="utf-8").split("\n\n"):
        lines = [line for line in stanza.splitlines() if line.strip() and not line.startswith("#")]
        if not lines:
            continue
        afters = tuple(squeezed(line[2:]) for line in lines if line.startswith("+ "))
        reason = squeezed(" ".join(lines[2 + len(afters) :]))
        if len(lines) < 4 or not lines[1].startswith("- ") or not afters or not reason:
            raise ValueError(f"{path}: a stanza is a file, a line with -, lines with + and a reason: {lines[0]}")
        explanations.append(Explanation(lines[0].strip(), squeezed(lines[1][2:]), afters, reason))
    return explanations


def squeezed(text):
    return " ".join(text.split())


def find_explanation(explanations, mutant):
    for explanation in explanations:
        if (explanation.file, explanation.before) == (mutant.file, mutant.before):
            if mutant.after in explanation.afters or explanation.is_for_any:
                return explanation
    return None
