"""Reports of measuring programs: what is refused, and how figures are shown."""

import json
import pathlib
import sys
import unittest

sys.dont_write_bytecode = True
PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.append(str(PROJECT / "Benchmarks/Page"))

import reports  # noqa: E402: in the folder named above

ROW = {"name": "event", "median": 61.5, "unit": "µs"}


def report_with(row):
    return json.dumps({"group": "transport", "title": "Transport", "rows": [row]})


class Parsing(unittest.TestCase):
    def refused(self, text, reason):
        with self.assertRaisesRegex(reports.BadReport, reason):
            reports.parse("transport", text)

    def test_a_row_with_the_least_fields_is_taken(self):
        self.assertEqual(reports.parse("transport", report_with(ROW))["rows"], [ROW])

    def test_what_is_no_report_is_refused_with_the_groups_name(self):
        self.refused("Segmentation fault", "^transport: .*not JSON")
        self.refused("[]", "does not name the group")
        self.refused(report_with(ROW).replace('"transport"', '"engine"'), "does not name the group")
        self.refused('{"group": "transport", "title": "Transport", "rows": []}', "no rows")

    def test_a_row_that_is_misspelt_or_incomplete_is_refused(self):
        self.refused(report_with({**ROW, "ration": 2}), "unknown field ration")
        self.refused(report_with({"name": "event", "unit": "µs"}), "no median")
        self.refused(report_with({**ROW, "median": "61.5"}), "median of a row cannot be '61.5'")
        self.refused(report_with({**ROW, "median": float("nan")}), "cannot be nan")
        self.refused(report_with({**ROW, "beside": "bare call"}), "without the other")
        self.refused(report_with({**ROW, "aim": 1, "aimIs": "mots"}), "'mots'")


class Aims(unittest.TestCase):
    def test_the_ratio_counts_where_there_is_one_and_else_the_median(self):
        self.assertTrue(reports.missed({**ROW, "aim": 60}))
        self.assertFalse(reports.missed({**ROW, "aim": 62}))
        self.assertFalse(reports.missed({**ROW, "beside": "bare call", "ratio": 1.2, "aim": 1.3}))
        self.assertTrue(reports.missed({**ROW, "beside": "bare call", "ratio": 1.4, "aim": 1.3}))

    def test_an_aim_can_be_the_least(self):
        self.assertTrue(reports.missed({**ROW, "aim": 62, "aimIs": "least"}))
        self.assertFalse(reports.missed({**ROW, "aim": 60, "aimIs": "least"}))

    def test_a_row_without_an_aim_misses_none(self):
        self.assertFalse(reports.missed(ROW))


class Figures(unittest.TestCase):
    def test_numbers_have_three_digits_that_count_or_more_before_the_point(self):
        for value, text in (
            (0, "0"),
            (0.012345, "0.0123"),
            (1.2345, "1.23"),
            (61.51, "61.5"),
            (999.6, "1,000"),
            (1234567.8, "1,234,568"),
            (-4.2, "-4.20"),
        ):
            self.assertEqual(reports.number(value), text)

    def test_sizes_in_bytes_are_told_in_the_largest_unit_that_is_exact(self):
        for size, text in (
            (1000, "1,000 bytes"),
            (1024, "1 KiB"),
            (1536, "1,536 bytes"),
            (2**20, "1 MiB"),
            (2**30, "1 GiB"),
        ):
            self.assertEqual(reports.size_text({"size": size, "sizeUnit": "bytes"}), text)

    def test_columns_without_a_figure_are_left_out(self):
        table = reports.markdown_table({"rows": [ROW]})
        self.assertEqual(table, "| Measured | Median |\n|---|---:|\n| event | 61.5 µs |")


if __name__ == "__main__":
    unittest.main()
