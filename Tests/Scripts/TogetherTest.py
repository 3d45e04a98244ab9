"""Tests of how Scripts/test counts: of tests that share a process, each is counted once, whatever
becomes of the process; none can be lost."""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
SUPPORT = PROJECT / "Scripts" / "Support"
PROGRAM = sys.argv.pop(1)
PASSING = {f"Three/Passes.WithANumber/{number}": "passed" for number in range(3)}


class RunTogether(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="TogetherTest.")
        self.addCleanup(directory.cleanup)
        self.build = Path(directory.name)

    def run_part(self, tests, part="1", parts="1", seconds="20"):
        """The status of run-together, and what its report says of each test."""
        report = self.build / "together" / f"Together.Some.{part}.json"
        command = [SUPPORT / "run-together", PROGRAM, tests, part, parts, seconds, report]
        finished = subprocess.run(command, capture_output=True, text=True)
        results = json.loads(report.read_text(encoding="utf-8")) if report.is_file() else None
        return finished, results

    def outcome(self, tests, **options):
        finished, results = self.run_part(tests, **options)
        failed = [name for name, result in results.items() if result == "failed"]
        self.assertEqual(finished.returncode, 1 if failed else 0)
        for name in failed:
            self.assertIn(f"failed: {name}\n", finished.stdout)
        return results

    def test_what_passes_fails_and_is_skipped_is_told(self):
        self.assertEqual(self.outcome("*Passes.*"), PASSING)
        expected = PASSING | {"Fails.Always": "failed", "IsSkipped.Always": "skipped"}
        self.assertEqual(self.outcome("*Passes.*:Fails.*:IsSkipped.*"), expected)

    def test_where_one_dies_the_others_count_and_it_is_named(self):
        self.assertEqual(self.outcome("*Passes.*:Dies.*"), PASSING | {"Dies.Always": "failed"})

    def test_one_that_ends_the_process_as_if_all_were_well_keeps_no_other_from_running(self):
        results = self.outcome("*Passes.*:EndsTheProcess.*:IsSkipped.*")
        expected = PASSING | {"EndsTheProcess.AsIfAllWereWell": "failed"}
        self.assertEqual(results, expected | {"IsSkipped.Always": "skipped"})

    def test_one_that_never_ends_is_named(self):
        results = self.outcome("*Passes.*:NeverEnds.*", seconds="0.5")
        self.assertEqual(results, PASSING | {"NeverEnds.Always": "failed"})

    def test_a_death_that_no_test_dies_alone_is_a_failure_of_its_own(self):
        results = self.outcome("DiesInCompany.*")
        self.assertEqual(sorted(results.values()), ["failed", "passed", "passed"])
        self.assertEqual(results["DiesInCompany.NotAlone"], "passed")

    def test_a_failure_outside_of_all_tests_is_a_failure_of_its_own(self):
        results = self.outcome("FailsAfterwards.*")
        self.assertEqual(sorted(results.values()), ["failed", "passed"])

    def test_the_parts_are_all_tests_each_once(self):
        parts = [self.outcome("*Passes.*", part=part, parts="2") for part in ("1", "2")]
        self.assertEqual([len(part) for part in parts], [2, 1])
        self.assertEqual(parts[0] | parts[1], PASSING)

    def test_a_part_without_tests_is_an_error(self):
        finished, results = self.run_part("No.*")
        self.assertEqual(finished.returncode, 1)
        self.assertIsNone(results)


class Counting(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="TogetherTest.")
        self.addCleanup(directory.cleanup)
        self.build = Path(directory.name)

    def counted(self, cases, known, **reports):
        """What count-tests says, of CTest's report of these cases and of so many known tests."""
        lines = [f'<testcase name="{name}" status="{status}"/>' for name, status in cases.items()]
        report = f"<testsuite>{''.join(lines)}</testsuite>"
        (self.build / "tests.xml").write_text(report, encoding="utf-8")
        tests = [f'add_test("Known.{number}" "true")\n' for number in range(known)]
        (self.build / "CTestTestfile.cmake").write_text("".join(tests), encoding="utf-8")
        (self.build / "together").mkdir(exist_ok=True)
        for name, results in reports.items():
            path = self.build / "together" / f"Together.{name}.json"
            path.write_text(json.dumps(results), encoding="utf-8")
        finished = subprocess.run(
            [SUPPORT / "count-tests", self.build], capture_output=True, text=True, check=True
        )
        return finished.stdout.splitlines()

    def test_each_test_of_a_process_counts(self):
        cases = {"One": "run", "Two": "fail", "Three": "notrun", "Together.A": "fail"}
        results = {"a": "passed", "b": "passed", "c": "failed", "d": "skipped"}
        self.assertEqual(self.counted(cases, 7, A=results), ["failed: c", "3 2 2"])

    def test_tests_of_one_name_in_two_programs_both_count(self):
        cases = {"Together.A": "run", "Together.B": "run"}
        said = self.counted(cases, 2, A={"a": "passed"}, B={"a": "passed"})
        self.assertEqual(said, ["2 0 0"])

    def test_a_process_that_reports_nothing_has_failed_with_all_its_tests(self):
        said = self.counted({"One": "run", "Together.A": "run"}, 5)
        self.assertEqual(said, ["failed: 4 tests that did not run at all", "1 4 0"])
        said = self.counted({"One": "run", "Together.A": "fail"}, 1)
        self.assertEqual(said, ["failed: Together.A", "1 1 0"])

    def test_a_process_that_failed_though_its_tests_passed_has_failed(self):
        said = self.counted({"Together.A": "fail"}, 1, A={"a": "passed"})
        self.assertEqual(said, ["failed: Together.A", "1 1 0"])

    def test_tests_that_no_process_ran_have_failed(self):
        said = self.counted({"Together.A": "run"}, 3, A={"a": "passed"})
        self.assertEqual(said, ["failed: 2 tests that did not run at all", "1 2 0"])


if __name__ == "__main__":
    unittest.main()
