"""shellcheck over every shell script."""

import json
import subprocess

from .clean import digest
from .project import Finding


def findings(project, clean):
    version = subprocess.run(
        ["shellcheck", "--version"], capture_output=True, text=True, check=True
    ).stdout
    # A script is judged with those that it sources: all of them are in the key.
    key = digest("shellcheck", version, *(project.read(path) for path in project.shell))
    if key in clean or not project.shell:
        return
    finished = subprocess.run(
        ["shellcheck", "--external-sources", "--format=json", *project.shell],
        cwd=project.root,
        capture_output=True,
        text=True,
    )
    found = json.loads(finished.stdout)
    for each in found:
        yield Finding(each["file"], each["line"], each["message"], f"SC{each['code']}")
    if not found:
        clean.add(key)
