"""clang's static analyser over the Objective-C++ of the product: what is retained and never
released, released too often, or used after its end."""

import re
import subprocess

from .clean import digest
from .project import Finding, LintError

COMMAND = "Scripts/Support/analyse-ownership"
ROOMS = ("Plugin/", "HostContract/", "Formats/", "Examples/SmallestHost/")
DIAGNOSTIC = re.compile(r"^(/?\S[^:\n]*):(\d+):\d+: (?:warning|error): (.*)$", re.MULTILINE)


def findings(project, clean, build):
    if not (project.root / COMMAND).is_file():
        return
    # A source is judged with the headers that it reads: all of these rooms are in the key.
    read = [path for path in project.cpp if path.startswith(ROOMS)]
    key = digest("ownership", project.read(COMMAND), *(project.read(path) for path in read))
    if key in clean or not read:
        return
    finished = subprocess.run(
        [project.root / COMMAND, build], cwd=project.root, capture_output=True, text=True
    )
    found = set(DIAGNOSTIC.findall(finished.stderr))
    for path, line, reason in sorted(found):
        shown = path.removeprefix(f"{project.root}/")
        yield Finding(shown, int(line), reason, "ownership")
    if finished.returncode == 0:
        clean.add(key)
    elif not found:
        raise LintError(f"{COMMAND} failed:\n{finished.stderr[-2000:]}")
