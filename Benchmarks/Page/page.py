"""Puts tables and plots between the markers of Documentation/Performance.md; all other text
there is written by hand and left alone."""

import re

import plots
import reports

BEGIN, END = "<!-- measured: {} -->", "<!-- end -->"
TABLE_LENGTH = 16  # longer ones are folded away under the plots


def versions_text(conditions):
    versions = conditions["versions"]
    return ", ".join(
        value if name == "system" else f"{name} {value}"
        for name, value in versions.items()
        if value != "none"
    )


def conditions_text(report):
    conditions = report["conditions"]
    repetitions = {row["repetitions"] for row in report["rows"] if row.get("repetitions", 0) > 1}
    medians = (
        f" Medians of {' to '.join(map(str, sorted({min(repetitions), max(repetitions)})))} runs."
        if repetitions
        else ""
    )
    own = report.get("versions", {})
    beside = (
        f" Beside: {', '.join(f'{name} {version}' for name, version in own.items())}."
        if own
        else ""
    )
    return (
        f"`Scripts/benchmark {report['group']}`, {conditions['date']}, on {conditions['machine']} "
        f"(load "
        f"{conditions['load']:g} before the run).{medians} {versions_text(conditions)}.{beside}"
    )


def section(report, image_names):
    images = [f"![{title}](Images/{name}.svg)" for title, name in image_names]
    table = reports.markdown_table(report)
    if len(report["rows"]) > TABLE_LENGTH and images:
        summary = f"<summary>All {len(report['rows'])} figures</summary>"
        table = f"<details>{summary}\n\n{table}\n\n</details>"
    return "\n\n".join([*images, table, conditions_text(report)])


def replace_section(text, report, content):
    """The page with the section of the report's group replaced, or added at its end."""
    begin = BEGIN.format(report["group"])
    block = f"{begin}\n{content}\n{END}"
    pattern = re.compile(re.escape(begin) + r".*?" + re.escape(END), re.DOTALL)
    if pattern.search(text):
        return pattern.sub(lambda _: block, text, count=1)
    return f"{text.rstrip()}\n\n## {report['title']}\n\n{block}\n"


def write(project, all_reports):
    path = project / "Documentation/Performance.md"
    text = path.read_text(encoding="utf-8")
    for report in all_reports:
        names = plots.draw(report, project / "Documentation/Images")
        text = replace_section(text, report, section(report, names))
    path.write_text(text, encoding="utf-8")
