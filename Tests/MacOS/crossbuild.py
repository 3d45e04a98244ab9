"""The project built for macOS on Linux, and sources of the plug-in's kind built beside it."""

import json
import os
import re
import shlex
import shutil
import subprocess
import tempfile
from pathlib import Path

import sdk
import symbols

HERE = Path(__file__).resolve().parent
PROJECT = HERE.parents[1]


class Refused(Exception):
    """What the compiler or the linker said, and why."""


def oldest_system():
    text = (PROJECT / "CMake" / "Compilers.cmake").read_text()
    return re.search(r"CMAKE_OSX_DEPLOYMENT_TARGET ([\d.]+)", text).group(1)


def run(command, directory=PROJECT):
    # clang makes a folder for temporary files of each processor's, and leaves it behind empty.
    with tempfile.TemporaryDirectory() as scratch:
        done = subprocess.run(
            command,
            cwd=directory,
            env={**os.environ, "TMPDIR": scratch},
            text=True,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
        )
    if done.returncode != 0:
        libraries = symbols.read_list(symbols.LIST.read_text())
        raise Refused(
            "\n".join([done.stdout, *symbols.explain(done.stdout, libraries, oldest_system())])
        )
    return done.stdout


class CrossBuild:
    def __init__(self, directory):
        self.directory = Path(directory).resolve()
        self.build = self.directory / "build"
        self.plugin = self.build / "KorvoMellelPlugin.bundle"
        self.host = self.build / "bin" / "SmallestHost.app"

    def bring_up_to_date(self):
        """Builds everything. Refused if that cannot be done without a warning."""
        self.directory.mkdir(parents=True, exist_ok=True)
        sdk.make(self.directory, oldest_system())
        # No build knows that it depends on the system's libraries, and none takes a file out of a
        # bundle again that it no longer puts in.
        for bundle in self.build.glob("**/Contents"):
            shutil.rmtree(bundle)
        run(
            [
                "cmake",
                "-S",
                PROJECT,
                "-B",
                self.build,
                "-G",
                "Ninja",
                "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
                f"-DCMAKE_TOOLCHAIN_FILE={HERE}/Toolchain.cmake",
                f"-DMACOS_STAND_IN={self.directory}",
            ]
        )
        return run(["ninja", "-C", self.build, "-k", "0"])

    def install(self, prefix):
        run(["cmake", "--install", self.build, "--prefix", prefix])

    def compile(self, source, result):
        """Compiles an Objective-C++ source as one of the plug-in's."""
        entries = json.loads((self.build / "compile_commands.json").read_text())
        [entry] = [entry for entry in entries if entry["file"].endswith("/KorvoMellelAgent.mm")]
        command = shlex.split(entry["command"])
        command[command.index("-o") + 1] = str(result)
        command[command.index(entry["file"])] = str(source)
        run(command, entry["directory"])

    def link(self, added, result):
        """Links the plug-in, with an object more."""
        name = str((self.plugin / "Contents" / "MacOS" / self.plugin.stem).relative_to(self.build))
        commands = run(["ninja", "-C", self.build, "-t", "commands", name]).strip().splitlines()
        [command] = [part for part in commands[-1].split(" && ") if f"-o {name}" in part]
        run(
            [
                *shlex.split(command.replace(f"-o {name}", f"-o {shlex.quote(str(result))}")),
                str(added),
            ],
            self.build,
        )
