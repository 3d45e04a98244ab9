"""Runs korvo, mellel and pandoc, and says how long they took."""

import dataclasses
import os
import pathlib
import select
import signal
import subprocess
import time

TICKS = os.sysconf("SC_CLK_TCK")
STYLES = pathlib.Path("/usr/share/citation-style-language/styles")


class Failed(Exception):
    """One line for whoever started the measurement."""


@dataclasses.dataclass(frozen=True)
class Run:
    """Seconds; `progress` is when the first line about it was shown, if there was one."""

    wall: float
    user: float
    progress: float | None = None


def user_seconds(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return int(fields[11]) / TICKS


def peak_memory(pid):
    """MiB."""
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmHWM:"):
            return int(line.split()[1]) / 1024
    return 0.0


def run_timed(command, timeout):
    """The run, and what the command printed. Its own user time is counted."""
    begin = time.monotonic()
    progress = None
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
        texts = {process.stdout: b"", process.stderr: b""}
        open_streams = list(texts)
        while open_streams:
            ready, _, _ = select.select(open_streams, [], [], timeout)
            if not ready:
                process.kill()
                raise Failed(f"no sign of life for {timeout} s: {' '.join(map(str, command))}")
            for stream in ready:
                piece = os.read(stream.fileno(), 1 << 16)
                texts[stream] += piece
                if not piece:
                    open_streams.remove(stream)
                elif stream is process.stderr and progress is None:
                    progress = time.monotonic() - begin
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.monotonic() - begin
        process.returncode = os.waitstatus_to_exitcode(status)
        output, problems = texts[process.stdout].decode(), texts[process.stderr].decode()
    if process.returncode != 0:
        raise Failed(f"{' '.join(map(str, command))}: {problems.strip() or process.returncode}")
    return Run(wall, usage.ru_utime, progress), output


class Korvo:
    """A running host; ends with its scope."""

    def __init__(self, directory, library, style, settle):
        self.directory = directory
        self.process = subprocess.Popen(
            [directory / "korvo", "--library", library, "--default-style", style],
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            text=True,
        )
        for line in self.process.stdout:
            if line.strip() == "ready":
                break
        else:
            raise Failed("korvo ended before it was ready")
        time.sleep(settle)
        # Its other lines are of no interest, but somebody has to take them.
        self.reader = subprocess.Popen(
            ["cat"], stdin=self.process.stdout, stdout=subprocess.DEVNULL
        )

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        try:
            self.process.wait(20)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process.stdout.close()
        self.reader.wait()

    def scan(self, document, style, output, timeout):
        before = user_seconds(self.process.pid)
        command = [self.directory / "mellel", "scan", document, "--style", style, "-o", output]
        run, printed = run_timed(command, timeout)
        citations = next(
            (line for line in printed.splitlines() if line.startswith("formatted:")), ""
        )
        words = citations.split()
        if len(words) < 4 or words[1] != words[3]:
            raise Failed(f"not every citation was formatted: {citations or printed}")
        return Run(run.wall, run.user + user_seconds(self.process.pid) - before, run.progress)

    def peak_memory(self):
        return peak_memory(self.process.pid)


def import_library(directory, source, target):
    subprocess.run(
        [directory / "korvo", "import", source, "--into", target],
        check=True,
        stdout=subprocess.DEVNULL,
    )


def run_pandoc(document, style, library, output, timeout):
    command = [
        "pandoc",
        "--citeproc",
        f"--csl={STYLES / style}.csl",
        f"--bibliography={library}",
        document,
        f"--output={output}",
    ]
    return run_timed(command, timeout)[0]


def version(command):
    return subprocess.run(
        [command, "--version"], check=True, capture_output=True, text=True
    ).stdout.splitlines()[0]
