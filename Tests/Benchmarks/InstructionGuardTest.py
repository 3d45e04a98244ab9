"""What the guard of the instruction counts says about counts."""

import contextlib
import io
import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.append(str(PROJECT / "Benchmarks/Instructions"))

import guard  # noqa: E402: in the folder named above


def wrong_with(recorded, counted):
    with contextlib.redirect_stdout(io.StringIO()):
        return guard.report(recorded, counted)


class Comparing(unittest.TestCase):
    def test_five_percent_more_pass_and_above_fail(self):
        self.assertEqual(wrong_with({"job": 1000}, {"job": 1050}), [])
        self.assertEqual(
            wrong_with({"job": 1000}, {"job": 1060}),
            ["job takes 6.0% more instructions: 1,060, recorded 1,000"],
        )

    def test_fewer_pass(self):
        self.assertEqual(wrong_with({"job": 1000}, {"job": 100}), [])

    def test_jobs_that_are_only_recorded_or_only_counted_fail(self):
        self.assertEqual(
            wrong_with({"old": 1}, {"new": 1}),
            ["new is counted, but not recorded", "old is recorded, but is not counted any more"],
        )


class Choosing(unittest.TestCase):
    def test_each_yearly_release_of_the_compiler_has_its_counts(self):
        self.assertEqual(guard.record_of("12.2.0"), guard.record_of("12.3.1"))
        self.assertNotEqual(guard.record_of("12.2.0"), guard.record_of("14.2.0"))


class Reading(unittest.TestCase):
    def count_in(self, text):
        with tempfile.TemporaryDirectory() as directory:
            profile = pathlib.Path(directory) / "callgrind.1"
            profile.write_text(text)
            return guard.count_in(profile)

    def test_the_count_stands_under_the_jobs_name(self):
        self.assertEqual(
            self.count_in("desc: Trigger: Client Request: a job\nfn=(1) memcpy\ntotals: 1234\n"),
            ("a job", 1234),
        )

    def test_what_no_job_left_is_passed_over(self):
        self.assertIsNone(self.count_in("desc: Trigger: Program termination\ntotals: 0\n"))

    def test_code_for_better_processors_is_refused(self):
        for name in (
            "__memcpy_avx_unaligned_erms",
            "__strlen_avx2",
            "__memset_evex_unaligned",
            "__strchr_sse42",
            "__memcpy_ssse3",
            "__memmove_sse2_unaligned_erms",
        ):
            with self.assertRaisesRegex(guard.Failed, name):
                self.count_in(f"desc: Trigger: Client Request: a job\nfn=(1) {name}\ntotals: 1\n")

    def test_code_for_every_processor_is_not(self):
        for name in ("__memcpy_sse2_unaligned", "__memset_sse2_unaligned_erms"):
            self.assertIsNotNone(
                self.count_in(f"desc: Trigger: Client Request: a job\nfn=(1) {name}\ntotals: 1\n")
            )


if __name__ == "__main__":
    unittest.main()
