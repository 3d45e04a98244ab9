"""One document in two languages: RTF with citations as an author types them, and pandoc's Markdown.

A document cites works of a pool, a part of the library: an author of a longer text comes back to
the same works. Most citations name one work, some two or three; some name a page or begin with a
word.
"""

import dataclasses
import random

POOL = 2000
WORDS = (
    "measure",
    "language",
    "machine",
    "number",
    "the",
    "of",
    "and",
    "in",
    "light",
    "signs",
    "which",
    "history",
    "was",
    "method",
    "every",
    "later",
    "before",
    "writing",
    "observed",
    "another",
)
CITATIONS_A_PARAGRAPH = 6


@dataclasses.dataclass(frozen=True)
class Cite:
    reference: dict
    page: str = ""
    prefix: str = ""


def make_cite(pool, source):
    page = str(source.randrange(1, 400)) if source.random() < 0.2 else ""
    prefix = source.choice(("see", "compare", "as in")) if source.random() < 0.05 else ""
    return Cite(source.choice(pool), page, prefix)


def make_citations(library, count, seed):
    """A list of citations, each a list of Cites."""
    source = random.Random(f"document {seed} {count}")
    pool = source.sample(library, min(POOL, len(library)))
    sizes = source.choices((1, 2, 3), weights=(75, 17, 8), k=count)
    return [[make_cite(pool, source) for _ in range(size)] for size in sizes]


def with_one_changed(citations, library, change):
    """The same citations, of which one, somewhere in the first half, names another work."""
    source = random.Random(f"change {change} {len(citations)}")
    changed = list(citations)
    place = source.randrange(len(citations) // 2)
    changed[place] = [Cite(source.choice(library)), *changed[place][1:]]
    return changed


def sentences(citations, write):
    """Paragraphs of words, with what `write` makes of each citation at the end of every
    sentence."""
    source = random.Random("words")
    for start in range(0, len(citations), CITATIONS_A_PARAGRAPH):
        group = citations[start : start + CITATIONS_A_PARAGRAPH]
        yield " ".join(
            f"{' '.join(source.choices(WORDS, k=12)).capitalize()} {write(citation)}."
            for citation in group
        )


def escape_rtf(text):
    units = text.encode("utf-16-le")
    pieces = []
    for index in range(0, len(units), 2):
        unit = int.from_bytes(units[index : index + 2], "little")
        letter = chr(unit)
        if letter in "\\{}":
            pieces.append("\\" + letter)
        elif unit < 128:
            pieces.append(letter)
        else:
            pieces.append(f"\\u{unit - 65536 if unit > 32767 else unit}?")
    return "".join(pieces)


def typed_cite(cite):
    name = cite.reference["author"][0]
    year = cite.reference["issued"]["date-parts"][0][0]
    prefix = f"\\{cite.prefix} \\" if cite.prefix else ""
    page = f"@{cite.page}" if cite.page else ""
    return f"{prefix}{name.get('family') or name['literal']} {year}#{cite.reference['id']}{page}"


def rtf(citations):
    def write(citation):
        return escape_rtf("{" + "; ".join(map(typed_cite, citation)) + "}")

    paragraphs = "\\par\n".join(sentences(citations, write))
    return (
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Times;}}\\f0\\fs24\n"
        + paragraphs
        + "\\par\n\\{bibliography\\}\\par\n}\n"
    )


def markdown(citations):
    def write_cite(cite):
        prefix = cite.prefix + " " if cite.prefix else ""
        page = f", p. {cite.page}" if cite.page else ""
        return f"{prefix}@{cite.reference['id']}{page}"

    return (
        "\n\n".join(
            sentences(citations, lambda citation: f"[{'; '.join(map(write_cite, citation))}]")
        )
        + "\n"
    )
