"""Tests of what every command in Scripts says when it is asked for help, or called wrongly."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPTS = Path(__file__).resolve().parents[2] / "Scripts"
COMMANDS = sorted(path for path in SCRIPTS.iterdir() if os.access(path, os.X_OK) and path.is_file())
# What a command that went to work would call before long.
TOOLS = ("apt-get", "cmake", "ctest", "debootstrap", "dpkg-query", "npm", "sudo", "Xvfb")


class Help(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="HelpTest.")
        self.addCleanup(directory.cleanup)
        self.called = Path(directory.name, "called")
        for tool in TOOLS:
            stub = Path(directory.name, tool)
            stub.write_text(f'#!/bin/sh\necho {tool} >>"{self.called}"\nexit 1\n', encoding="utf-8")
            stub.chmod(0o755)
        self.environment = {**os.environ, "PATH": f"{directory.name}:{os.environ['PATH']}"}

    def run_command(self, path, *arguments):
        finished = subprocess.run(
            [path, *arguments],
            env=self.environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        called = self.called.read_text(encoding="utf-8") if self.called.exists() else ""
        self.assertEqual(called, "", f"{path.name} went to work")
        return finished

    def test_every_command_tells_how_it_is_called_and_does_nothing(self):
        self.assertGreater(len(COMMANDS), 10)
        for path in COMMANDS:
            with self.subTest(path.name):
                finished = self.run_command(path, "--help")
                self.assertEqual((finished.returncode, finished.stderr), (0, ""))
                first = finished.stdout.partition("\n")[0].removeprefix("usage: ")
                self.assertRegex(first, rf"^{path.name}[ :]")

    def test_every_command_refuses_what_it_does_not_know(self):
        for path in COMMANDS:
            # It takes names of measurements, which only a build knows.
            if path.name != "benchmark":
                with self.subTest(path.name):
                    finished = self.run_command(path, "--no-such-option")
                    self.assertIn(finished.returncode, (1, 2))
                    self.assertEqual(finished.stdout, "")
                    self.assertNotEqual(finished.stderr, "")


if __name__ == "__main__":
    unittest.main()
