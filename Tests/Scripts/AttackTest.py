"""Tests of Scripts/attack: what it says of tests that pass, fail, or are not there."""

import contextlib
import importlib.machinery
import importlib.util
import io
import re
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True


def load(path):
    loader = importlib.machinery.SourceFileLoader("attack", str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("attack", loader))
    loader.exec_module(module)
    return module


attack = load(PROJECT / "Scripts" / "attack")


class Attack(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="AttackTest.")
        self.addCleanup(directory.cleanup)
        self.build = Path(directory.name)

    def outcome(self, suites, **tests):
        """Of a build with tests of these names, each a command of the shell."""
        lines = [
            f'add_test("{name.replace("__", ".")}" "/bin/sh" "-c" "{command}")\n'
            for name, command in tests.items()
        ]
        (self.build / "CTestTestfile.cmake").write_text("".join(lines), encoding="utf-8")
        return attack.run_point(self.build, suites)

    def told(self, outcome):
        with contextlib.redirect_stdout(io.StringIO()) as said:
            attack.tell(7, "a thing", outcome)
        return said.getvalue()

    def test_a_point_is_held_when_all_its_tests_pass(self):
        outcome = self.outcome("A|B", A__x="echo figure: 5 ms", B__y="true", Other__z="false")
        self.assertTrue(outcome.is_held)
        self.assertEqual((outcome.passed, outcome.figures), (2, ["5 ms"]))
        self.assertRegex(self.told(outcome), r"^ 7  held: a thing: 2 tests, .* s\n +5 ms\n$")

    def test_tests_with_parameters_count_too(self):
        tests = {"During/A__x/scan  # GetParam() = 3": "true", "A__x/live  # GetParam()": "true"}
        outcome = self.outcome("A", **tests)
        self.assertTrue(outcome.is_held)
        self.assertEqual(outcome.passed, 2)

    def test_a_point_is_not_held_when_one_test_fails(self):
        outcome = self.outcome("A", A__x="true", A__y="exit 3")
        self.assertFalse(outcome.is_held)
        self.assertRegex(self.told(outcome), r"NOT HELD: a thing: 1 tests, .*\n +failed: A.y\n$")

    def test_a_point_without_tests_is_not_held(self):
        outcome = self.outcome("A", AB__x="true", Other__A="true")
        self.assertFalse(outcome.is_held)
        self.assertIn("there are no such tests", self.told(outcome))

    def test_every_suite_of_every_point_is_there(self):
        tests = [
            *PROJECT.glob("Tests/**/*.cpp"),
            *PROJECT.glob("Tests/**/*.mm"),
            *PROJECT.glob("Tests/**/*.py"),
            PROJECT / "Tests/Load/CMakeLists.txt",
        ]
        text = "".join(each.read_text(encoding="utf-8") for each in tests)
        for _, suites in attack.POINTS:
            for suite in suites.split("|"):
                definition = rf"TEST(_F|_P)?\({suite},|NAME {suite}\.|^class {suite}\("
                self.assertTrue(re.search(definition, text, re.MULTILINE), suite)


if __name__ == "__main__":
    unittest.main()
