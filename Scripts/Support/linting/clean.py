"""Which contents were found to be clean before, so that they need not be looked at again."""

import hashlib
from pathlib import Path


def digest(*parts):
    """Of bytes and texts, each with its length, so that no two lists are alike."""
    summed = hashlib.sha256()
    for part in parts:
        data = part if isinstance(part, bytes) else str(part).encode()
        summed.update(b"%d:" % len(data))
        summed.update(data)
    return summed.hexdigest()


class CleanFiles:
    """A directory with an empty file a clean digest. It is never in the way: whoever looks at other
    contents, by another version or other options, asks for another digest."""

    # Digests of contents that no longer exist are not told from others: at so many, all go.
    LIMIT = 20_000

    def __init__(self, directory):
        self.directory = Path(directory) / "clean"

    def __enter__(self):
        self.directory.mkdir(parents=True, exist_ok=True)
        self.known = {entry.name for entry in self.directory.iterdir()}
        if len(self.known) > self.LIMIT:
            for name in self.known:
                (self.directory / name).unlink()
            self.known = set()
        return self

    def __exit__(self, *_):
        return False

    def __contains__(self, key):
        return key in self.known

    def add(self, key):
        (self.directory / key).touch()
        self.known.add(key)
