"""The project's files by language, and what is found in them."""

import subprocess
from dataclasses import dataclass
from functools import cached_property
from pathlib import Path

CPP = (".cpp", ".h", ".mm", ".m")
JAVASCRIPT = (".js", ".mjs")


class LintError(Exception):
    """What keeps lint from looking: a tool that is missing or fails."""


@dataclass(frozen=True)
class Finding:
    path: str
    line: int
    reason: str
    rule: str

    def __str__(self):
        return f"{self.path}:{self.line}: {self.reason} [{self.rule}]"


class Project:
    """The files below a directory that git knows or would add. Paths are relative, with slashes."""

    def __init__(self, root):
        self.root = Path(root).resolve()

    def git(self, *arguments):
        if not (self.root / ".git").exists():
            raise LintError(f"{self.root} is no clone: nothing says which files are the project's")
        return subprocess.run(
            ["git", "-C", self.root, *arguments], capture_output=True, text=True, check=True
        ).stdout

    @cached_property
    def files(self):
        listed = self.git("ls-files", "-z", "--cached", "--others", "--exclude-standard")
        # What was deleted and is not staged yet is still listed.
        return sorted(name for name in set(listed.split("\0")) if (self.root / name).is_file())

    def read(self, path):
        return (self.root / path).read_text(encoding="utf-8")

    def ending(self, *suffixes):
        return [path for path in self.files if path.endswith(suffixes)]

    @cached_property
    def _commands(self):
        """Files without a suffix that name their interpreter in their first line."""
        found = {}
        for path in self.files:
            if not Path(path).suffix:
                with open(self.root / path, "rb") as stream:
                    first = stream.readline(100)
                if first.startswith(b"#!"):
                    found[path] = first.decode("utf-8", "replace")
        return found

    def _run_by(self, interpreter):
        return [path for path, line in self._commands.items() if interpreter in line]

    @property
    def cpp(self):
        return self.ending(*CPP)

    @property
    def javascript(self):
        return self.ending(*JAVASCRIPT)

    @property
    def python(self):
        return self.ending(".py") + self._run_by("python3")

    @property
    def shell(self):
        return self.ending(".sh", ".bash") + self._run_by("bash")

    @property
    def cmake(self):
        return self.ending(".cmake", "CMakeLists.txt")
