"""The conversations that are kept: what the host is started with, and what the word processor is
told to do."""

import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent
PROJECT = HERE.parents[1]
DRAFT = HERE / "draft.rtf"
STYLES = Path("/usr/share/citation-style-language")
# The checksums of the styles and the language that the recordings were made with.
CHECKSUMS = HERE / "styles.sha256"
LOCALE = "locales/locales-en-US.xml"


@dataclass(frozen=True)
class Conversation:
    name: str
    words: tuple  # of the word processor
    style: str = ""  # by its file's name; empty: nothing is formatted
    options: tuple = ()  # of the host

    @property
    def recording(self):
        return HERE / f"{self.name}.recording"

    def files(self):
        return [LOCALE, f"styles/{self.style}.csl"] if self.style else []


def scan(style, *more):
    return Conversation(f"scan-{style}", ("scan", DRAFT, "--style", style, *more), style)


def live(style, *more):
    return Conversation(f"live-{style}", ("live", DRAFT, "--style", style, *more), style)


WITH_DEFAULT = ("--default-style", "apa")
ALL = [
    Conversation("handshake", ("handshake",)),
    Conversation("insert-one", ("insert",), options=("--select", "turing1950")),
    Conversation("insert-two", ("insert",), options=("--select", "turing1950,godel1931")),
    Conversation("insert-nothing", ("insert",)),
    Conversation("open", ("open", "Turing 1950#turing1950@433")),
    Conversation("open-nobody", ("open", "Nobody 1900")),
    Conversation("check", ("check", DRAFT), "apa", WITH_DEFAULT),
    Conversation("live-default", ("live", DRAFT), "apa", WITH_DEFAULT),
    Conversation(
        "scan-without-bibliography",
        ("scan", DRAFT, "--style", "apa", "--no-bibliography"),
        "apa",
    ),
    scan("apa"),
    scan("ieee"),
    scan("nature"),
    scan("chicago-fullnote-bibliography"),
    live("modern-language-association"),
    live("american-medical-association"),
]


def installed(names):
    """Lines of sha256sum for files of the styles."""
    command = ["sha256sum", *names]
    return subprocess.run(
        command, cwd=STYLES, check=True, capture_output=True, text=True
    ).stdout.splitlines()


def host(build, conversation):
    library = PROJECT / "Examples" / "library.bib"
    return [build / "bin" / "korvo", "--library", library, *conversation.options]


def record(build, conversation):
    """A host of its own for each: an answer may depend on what was asked before."""
    with (
        tempfile.TemporaryDirectory() as directory,
        subprocess.Popen(
            host(build, conversation),
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        ) as korvo,
    ):
        while korvo.stdout.readline() not in ("ready\n", ""):
            pass
        words = [*conversation.words, "--timeout", "20"]
        if words[0] in ("scan", "live"):
            words += ["-o", Path(directory) / "copy.rtf"]
        recorder = [build / "bin" / "appleevents", "record", "--no-times"]
        recorder += ["-o", conversation.recording, "--", build / "bin" / "mellel", *words]
        subprocess.run(recorder, stdout=subprocess.DEVNULL)
        korvo.terminate()
    conversation.recording.chmod(0o644)


def record_all(build):
    files = sorted({name for each in ALL for name in each.files()})
    CHECKSUMS.write_text("\n".join(installed(files)) + "\n")
    for old in HERE.glob("*.recording"):
        old.unlink()
    for conversation in ALL:
        record(build, conversation)
        print(conversation.recording.name)


if __name__ == "__main__":
    record_all(Path(sys.argv[1]).resolve())
