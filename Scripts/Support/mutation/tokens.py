"""Cuts C++ and Objective-C++ into tokens, and finds the statements among them.

No parser: it knows comments, strings, brackets and keywords, and relies on how this project's
code is formatted. A guess that goes wrong makes a mutant that does not compile, which costs a
second.
"""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*)
  | (?P<string>(?:u8|[uUL@])?R"(?P<fence>[^(\s]*)\(.*?\)(?P=fence)"|(?:u8|[uUL@])?"(?:\\.|[^"\\])*")
  | (?P<character>(?:u8|[uUL])?'(?:\\.|[^'\\])+')
  | (?P<number>\d(?:'?[0-9A-Za-z_.])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<sign><=>|<<=|>>=|\.\.\.|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\|
            |\+=|-=|\*=|/=|%=|&=|\|=|\^=|::|.)
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

CLOSING = {"(": ")", "[": "]", "{": "}"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int  # offsets into the source
    end: int


def tokens_of(source):
    """The tokens that mean something: no blanks, comments or preprocessor lines."""
    return [
        Token(
            match.lastgroup if match.lastgroup != "fence" else "string",
            match.group(),
            match.start(),
            match.end(),
        )
        for match in TOKEN.finditer(source)
        if not match.group().isspace() and match.lastgroup not in ("comment", "directive")
    ]


class Structure:
    """Bodies, conditions and simple statements of a source, as ranges of token indices (end
    exclusive).

    `statements` holds, for each sequence of simple statements (those that end in ";") without
    anything else between them, the list of their ranges.
    """

    def __init__(self, tokens):
        self.tokens = tokens
        self.bodies = []
        self.conditions = []
        self.statements = []
        index = 0
        while index < len(tokens):
            index = self._scope(index)

    def _text(self, index):
        return self.tokens[index].text if index < len(self.tokens) else "}"

    def _scope(self, index):
        """Namespaces, classes and files: declarations up to the closing brace."""
        head = index
        while index < len(self.tokens):
            text = self._text(index)
            if text == "}":
                return index + 1
            if text in "([":
                index = self._group(index)
            elif text == "{":
                kind = self._kind(head, index)
                if kind == "scope":
                    index = self._scope(index + 1)
                elif kind == "body":
                    index = self._body(index + 1)
                else:
                    index = self._group(index)
                    continue
                head = index
            else:
                index += 1
                if text == ";" or text == "end" and self._text(index - 2) == "@":
                    head = index
        return index

    def _kind(self, head, brace):
        words = [token.text for token in self.tokens[head:brace]]
        if "interface" in words:
            return "scope"
        has_parameters = "(" in words or words[:1] in (["-"], ["+"])
        if not has_parameters and {"namespace", "class", "struct", "union", "extern"} & set(words):
            return "scope"
        assigns = any(
            word == "=" and words[place - 1] != "operator" for place, word in enumerate(words)
        )
        return "body" if has_parameters and not assigns else "initializer"

    def _body(self, index):
        first = index
        run = []
        while self._text(index) != "}":
            start = index
            index, simple = self._statement(index)
            if simple:
                run.append((start, index))
            elif run:
                self.statements.append(run)
                run = []
        if run:
            self.statements.append(run)
        self.bodies.append((first, index))
        return index + 1

    def _statement(self, index):
        """The index behind the statement, and whether it is a simple one."""
        text = self._text(index)
        if text == "@":
            index += 1
            text = self._text(index)
        if text == "{":
            return self._body(index + 1), False
        if text == ";":
            return index + 1, False
        if text in ("if", "for", "while", "switch", "catch"):
            index += 2 if self._text(index + 1) == "constexpr" else 1
            end = self._group(index)
            if text == "if":
                self.conditions.append((index + 1, end - 1))
            index, _ = self._statement(end)
            if self._text(index) == "else":
                index, _ = self._statement(index + 1)
            return index, False
        if text in ("do", "try", "finally"):
            index, _ = self._statement(index + 1)
            if text == "do":
                index = self._group(index + 1) + 1
            return index, False
        if text in ("case", "default"):
            while self._text(index) != ":":
                index += 1
            return index + 1, False
        while self._text(index) != ";":
            if self._text(index) == "}":
                return index, False
            index = self._step(index)
        return index + 1, True

    def _step(self, index):
        """Past one token of an expression, or past a whole bracket and what is in it."""
        if self._text(index) == "{" and self._text(index - 1) in (")", "]", "mutable"):
            return self._body(index + 1)
        return self._group(index) if self._text(index) in CLOSING else index + 1

    def _group(self, index):
        closing = CLOSING[self._text(index)]
        index += 1
        while index < len(self.tokens) and self._text(index) != closing:
            index = self._step(index)
        return index + 1
