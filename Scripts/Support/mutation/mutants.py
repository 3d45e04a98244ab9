"""Makes mutants: copies of a source with one small mistake each."""

import re
from dataclasses import dataclass

from .tokens import Structure, tokens_of

COMPARISONS = {
    "==": ["!="],
    "!=": ["=="],
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
}
ARITHMETIC = {
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["*"],
    "<<": [">>"],
    ">>": ["<<"],
    "+=": ["-="],
    "-=": ["+="],
    "*=": ["/="],
    "<<=": [">>="],
    ">>=": ["<<="],
}
# These stand beside their operand, without a blank.
STEPS = {"++": ["--"], "--": ["++"]}
BOOLEANS = {
    "&&": ["||"],
    "||": ["&&"],
    "&": ["|"],
    "|": ["&"],
    "^": ["|"],
    "&=": ["|="],
    "|=": ["&="],
}
LITERALS = {"true": "false", "false": "true", "YES": "NO", "NO": "YES"}

DECLARATION = re.compile(
    r"(?:\[\[\w+\]\] )?(?:const|constexpr|static|auto|using|typedef|struct)\b"
    r"|(?!return\b|throw\b|delete\b|goto\b)[A-Za-z_][\w:]*(?:<[^;=]*>)?(?:\s+|\s*[*&]+\s*)"
    r"(?:const\s+)?[A-Za-z_]\w*\s*[=;({\[]"
)
LEAVES = re.compile(r"(?:return|break|continue|throw|goto)\b")
NOTHING_RETURNED = {"return {};", "return nil;", "return nullptr;", "return;"}


@dataclass(frozen=True)
class Mutant:
    file: str  # as the user names it, relative to the project
    line: int
    operator: str
    start: int  # the part of the source that is replaced
    end: int
    replacement: str
    before: str  # the lines touched, blanks squeezed
    after: str
    context: str  # the line before these

    def apply(self, source):
        return source[: self.start] + self.replacement + source[self.end :]

    def __str__(self):
        return f"{self.file}:{self.line}: {self.before} → {self.after}"


def squeezed(text):
    return " ".join(text.split()) or "(nothing)"


def mutants_of(file, source):
    """Every mutant of the source, in the order of the lines. No change of theirs moves a line."""
    maker = _Maker(file, source)
    maker.make()
    return sorted(
        set(maker.mutants), key=lambda made: (made.start, made.end, made.operator, made.replacement)
    )


class _Maker:
    def __init__(self, file, source):
        self.file = file
        self.source = source
        self.tokens = tokens_of(source)
        self.structure = Structure(self.tokens)
        self.mutants = []
        self.in_body = set()
        for first, end in self.structure.bodies:
            self.in_body.update(range(first, end))

    def make(self):
        for index, token in enumerate(self.tokens):
            self._constant(token)
            if index in self.in_body:
                self._sign(index, token)
        for first, end in self.structure.conditions:
            self._negate(first, end)
        for run in self.structure.statements:
            for place, statement in enumerate(run):
                self._return_value(statement)
                self._delete(statement)
                if place > 0:
                    self._swap(run[place - 1], statement)

    def _add(self, operator, start, end, replacement):
        left = self.source.rfind("\n", 0, start) + 1
        right = self.source.find("\n", end)
        right = len(self.source) if right < 0 else right
        self.mutants.append(
            Mutant(
                self.file,
                self.source.count("\n", 0, start) + 1,
                operator,
                start,
                end,
                replacement,
                squeezed(self.source[left:right]),
                squeezed(self.source[left:start] + replacement + self.source[end:right]),
                squeezed(self.source[self.source.rfind("\n", 0, max(left - 1, 0)) + 1 : left]),
            )
        )

    def _constant(self, token):
        if token.kind == "number":
            match = re.fullmatch(
                r"(0[xX][0-9A-Fa-f']+|0[0-7']*|[1-9][0-9']*)([uUlLzZ]*)", token.text
            )
            if match:
                digits, suffix = match.groups()
                plain = digits.replace("'", "")
                value = int(plain, 8 if re.fullmatch("0[0-7]+", plain) else 0)
                for other in (value + 1, value - 1):
                    if other >= 0:
                        text = hex(other) if plain[1:2] in ("x", "X") else str(other)
                        self._add("constant", token.start, token.end, text + suffix)
        elif token.kind == "character":
            prefix, body = re.fullmatch(r"([^']*)'(.*)'", token.text, re.DOTALL).groups()
            simple = {"\\n": "\n", "\\t": "\t", "\\r": "\r", "\\\\": "\\", "\\'": "'", "\\0": "\0"}
            body = simple.get(body, body)
            if len(body) == 1:
                self._add("constant", token.start, token.end, f"{prefix}'\\x{ord(body) + 1:02x}'")
        elif token.text in LITERALS:
            self._add("constant", token.start, token.end, LITERALS[token.text])

    def _sign(self, index, token):
        if token.kind != "sign":
            return
        for replacement in STEPS.get(token.text, []):
            self._add("arithmetic", token.start, token.end, replacement)
        if token.text in "!~":
            self._add("boolean", token.start, token.end, "")
        # Formatted code has blanks around a binary operator, and none around a template's brackets.
        if self.source[token.start - 1] != " " or self.source[token.end] not in " \n":
            return
        for operator, table in (
            ("comparison", COMPARISONS),
            ("arithmetic", ARITHMETIC),
            ("boolean", BOOLEANS),
        ):
            for replacement in table.get(token.text, []):
                self._add(operator, token.start, token.end, replacement)

    def _negate(self, first, end):
        start, stop = self.tokens[first].start, self.tokens[end - 1].end
        self._add("condition", start, stop, f"!({self.source[start:stop]})")

    def _span(self, statement):
        first, end = statement
        return self.tokens[first].start, self.tokens[end - 1].end

    def _return_value(self, statement):
        start, end = self._span(statement)
        text = self.source[start:end]
        value = text.removeprefix("return").strip(" ;\n")
        if (
            text.startswith("return")
            and text not in NOTHING_RETURNED
            and value not in LITERALS
            and value != "0"
        ):
            self._add("return value", start, end, "return {};" + "\n" * text.count("\n"))

    def _delete(self, statement):
        start, end = self._span(statement)
        text = self.source[start:end]
        if not DECLARATION.match(text) and not text.startswith("return "):
            self._add("deletion", start, end, ";" + "\n" * text.count("\n"))

    def _swap(self, first, second):
        start, middle = self._span(first)
        following, end = self._span(second)
        one, other = self.source[start:middle], self.source[following:end]
        if (
            any(DECLARATION.match(text) or LEAVES.match(text) for text in (one, other))
            or one == other
        ):
            return
        self._add("order", start, end, other + self.source[middle:following] + one)
