"""Reports of measuring programs: checked when they arrive, and shown as tables.

Benchmarks/README.md explains the fields.
"""

import json
import math

REQUIRED = {"name": str, "median": (int, float), "unit": str}
OPTIONAL = {
    "plot": str,
    "size": (int, float),
    "sizeUnit": str,
    "spread": (int, float),
    "repetitions": int,
    "beside": str,
    "ratio": (int, float),
    "aim": (int, float),
    "aimIs": str,
}
COLUMNS = ("Measured", "Size", "Median", "Spread", "Beside", "Ratio", "Aim")


class BadReport(Exception):
    """One line that names the group and what is wrong with its report."""


def check_row(group, row):
    known = {**REQUIRED, **OPTIONAL}
    for field, value in row.items():
        if field not in known:
            raise BadReport(f"{group}: a row has an unknown field {field}")
        if (
            not isinstance(value, known[field])
            or isinstance(value, float)
            and not math.isfinite(value)
        ):
            raise BadReport(f"{group}: {field} of a row cannot be {value!r}")
    missing = [field for field in REQUIRED if field not in row]
    if missing:
        raise BadReport(f"{group}: a row has no {missing[0]}")
    if ("beside" in row) != ("ratio" in row):
        raise BadReport(f"{group}: {row['name']} has one of beside and ratio without the other")
    if row.get("aimIs", "most") not in ("most", "least"):
        raise BadReport(f"{group}: the aim of {row['name']} is {row['aimIs']!r}")


def parse(group, text):
    """The report in a program's output."""
    try:
        report = json.loads(text)
    except json.JSONDecodeError as error:
        raise BadReport(f"{group}: what its program printed is not JSON: {error}") from error
    if (
        not isinstance(report, dict)
        or report.get("group") != group
        or not isinstance(report.get("title"), str)
    ):
        raise BadReport(f"{group}: its report does not name the group and a title")
    if not isinstance(report.get("rows"), list) or not report["rows"]:
        raise BadReport(f"{group}: its report has no rows")
    for row in report["rows"]:
        check_row(group, row)
    return report


def number(value):
    """Three digits that count, more where they stand before the point, thousands apart."""
    if value == 0:
        return "0"
    decimals = max(0, 2 - math.floor(math.log10(abs(value))))
    return f"{value:,.{decimals}f}"


def size_text(row):
    """1,000,000 citations; 64 KiB."""
    if "size" not in row:
        return ""
    size, unit = row["size"], row.get("sizeUnit", "")
    if unit == "bytes":
        for power, name in ((2**30, "GiB"), (2**20, "MiB"), (2**10, "KiB")):
            if size >= power and size % power == 0:
                return f"{size // power:,.0f} {name}"
    return f"{size:,.0f} {unit}".strip()


def missed(row):
    """Whether the row has an aim and is not within it."""
    if "aim" not in row:
        return False
    value = row.get("ratio", row["median"])
    return value < row["aim"] if row.get("aimIs") == "least" else value > row["aim"]


def aim_text(row):
    if "aim" not in row:
        return ""
    direction = "≥" if row.get("aimIs") == "least" else "≤"
    return f"{direction} {row['aim']:,g}" + (", missed" if missed(row) else "")


def cells(row):
    return (
        row["name"],
        size_text(row),
        f"{number(row['median'])} {row['unit']}",
        number(row["spread"]) if row.get("spread") else "",
        row.get("beside", ""),
        f"{row['ratio']:.2f}" if "ratio" in row else "",
        aim_text(row),
    )


def table_rows(report):
    """All rows as texts, without the columns that are empty in every row."""
    rows = [COLUMNS, *map(cells, report["rows"])]
    used = [column for column in range(len(COLUMNS)) if any(row[column] for row in rows[1:])]
    return [[row[column] for column in used] for row in rows]


def plain_table(report):
    rows = table_rows(report)
    widths = [max(map(len, column)) for column in zip(*rows, strict=True)]
    return "\n".join(
        "  ".join(cell.ljust(width) for cell, width in zip(row, widths, strict=True)).rstrip()
        for row in rows
    )


def markdown_table(report):
    heading, *rows = table_rows(report)
    lines = [
        "| " + " | ".join(heading) + " |",
        "|"
        + "|".join("---:" if name in ("Median", "Spread", "Ratio") else "---" for name in heading)
        + "|",
    ]
    lines += ["| " + " | ".join(cell.replace("|", "\\|") for cell in row) + " |" for row in rows]
    return "\n".join(lines)
