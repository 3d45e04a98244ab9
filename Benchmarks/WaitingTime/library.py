"""A library of any size, made from a small real one, the same for the same seed.

Every reference takes its kind, its journal or publisher and the parts of its title from real ones.
Authors come from a few hundred names of which some are common and most are rare, and years lie
close together, as in a real library: enough of them share author and year, or authors of one family
name, that a style has to tell them apart.
"""

import bisect
import itertools
import json
import random
import subprocess
import unicodedata

GIVEN = (
    "Ann",
    "Anna Maria",
    "A. B.",
    "Bo",
    "Carl",
    "Chen",
    "Clara",
    "David",
    "D.",
    "Elena",
    "Emil J.",
    "Eva",
    "Francesca",
    "Georg",
    "Hans-Peter",
    "Ines",
    "J.",
    "Jane",
    "Jean-Paul",
    "John",
    "J. R.",
    "Karin",
    "Li",
    "Louis",
    "Maria",
    "M.",
    "Nils",
    "Olga",
    "Paul",
    "Peter",
    "R. K.",
    "Rosa",
    "Sara",
    "Tomás",
    "Wei",
    "Yuki",
)
FAMILIES = (
    "Smith",
    "Wang",
    "Müller",
    "Jones",
    "Li",
    "García",
    "Kim",
    "Johnson",
    "Zhang",
    "Brown",
    "Chen",
    "Martin",
    "Schmidt",
    "Davis",
    "Rossi",
    "Lee",
    "Wilson",
    "Nguyen",
    "Tanaka",
    "Silva",
    "Taylor",
    "Liu",
    "Dubois",
    "Fischer",
    "Anderson",
    "Novák",
    "Singh",
    "Moore",
    "Hansen",
    "Thomas",
    "Kowalski",
    "Yang",
    "Jackson",
    "Meyer",
    "White",
    "Suzuki",
    "Harris",
    "Lopez",
    "Johansson",
    "Clark",
    "Weber",
    "Lewis",
    "Ivanov",
    "Walker",
    "Huang",
    "Hall",
    "Costa",
    "Young",
    "Nielsen",
    "Allen",
    "Becker",
    "King",
    "Moreau",
    "Wright",
    "Petrov",
    "Scott",
    "Hoffmann",
    "Green",
    "Zhao",
    "Baker",
    "Ricci",
    "Adams",
    "Virtanen",
    "Nelson",
    "Koch",
    "Hill",
    "Sato",
    "Campbell",
    "Wolf",
    "Mitchell",
    "Popescu",
)
PARTICLES = ("van", "van der", "de", "de la", "von")
FIRST_YEAR, LAST_YEAR = 1950, 2025


def read_base(bibtex_file):
    """The real references, as CSL-JSON objects."""
    command = ["pandoc", "--from=biblatex", "--to=csljson", bibtex_file]
    return json.loads(subprocess.run(command, check=True, capture_output=True, text=True).stdout)


def can_be_typed(reference):
    """Whether an author can cite it by name and year."""
    author = reference.get("author", [{}])[0]
    has_name = author.get("family") or author.get("literal")
    return bool(has_name and reference.get("issued", {}).get("date-parts"))


class Choice:
    """Picks the n-th of the values in proportion to 1/n."""

    def __init__(self, values):
        self.values = values
        self.sums = list(itertools.accumulate(1 / (rank + 3) for rank in range(len(values))))

    def pick(self, source):
        return self.values[bisect.bisect(self.sums, source.random() * self.sums[-1])]


def plain_word(text):
    decomposed = unicodedata.normalize("NFKD", text.lower())
    return "".join(letter for letter in decomposed if letter.isascii() and letter.isalpha())


def people_of(base, source):
    """Names as they are in the real library, and many more, the common ones first."""
    real = [name for item in base for name in item.get("author", []) if "family" in name]
    people = [
        {"family": family, "given": source.choice(GIVEN)} for family in FAMILIES for _ in range(4)
    ]
    for person in source.sample(people, len(people) // 12):
        person["non-dropping-particle"] = source.choice(PARTICLES)
    institutions = [name for item in base for name in item.get("author", []) if "literal" in name]
    people = [*people, *real, *institutions]
    source.shuffle(people)
    return Choice(people)


def titles_of(base):
    words = [
        item["title"].replace(":", "").split()
        for item in base
        if len(item.get("title", "").split()) > 3
    ]
    starts = [title[: len(title) // 2] for title in words]
    ends = [title[len(title) // 2 :] for title in words]
    return starts, ends


def author_count(source):
    return source.choices((1, 2, 3, 4, 5, 8), weights=(38, 24, 16, 10, 8, 4))[0]


def make_reference(base, people, titles, source):
    made = {
        key: value
        for key, value in source.choice(base).items()
        if key not in ("author", "editor", "title-short")
    }
    authors = []
    for _ in range(author_count(source)):
        person = people.pick(source)
        if person not in authors:
            authors.append(person)
    year = LAST_YEAR - min(int(source.expovariate(1 / 14)), LAST_YEAR - FIRST_YEAR)
    starts, ends = titles
    made["author"] = authors
    made["issued"] = {"date-parts": [[year]]}
    made["title"] = " ".join([*source.choice(starts), *source.choice(ends)])
    if made["type"].startswith("article"):
        first = source.randrange(1, 900)
        made.update(
            volume=str(source.randrange(1, 120)),
            issue=str(source.randrange(1, 12)),
            page=f"{first}-{first + source.randrange(3, 40)}",
            DOI=f"10.{source.randrange(1000, 9999)}/{source.randrange(10**8)}",
        )
    return made


def make_library(bibtex_file, size, seed):
    """CSL-JSON objects with unique ids that an author could have given them."""
    source = random.Random(f"library {seed} {size}")
    base = read_base(bibtex_file)
    people = people_of(base, source)
    titles = titles_of(base)
    library = []
    for number in range(size):
        made = make_reference(base, people, titles, source)
        name = made["author"][0]
        word = plain_word(name.get("family") or name["literal"])[:12]
        made["id"] = f"{word}{made['issued']['date-parts'][0][0]}n{number}"
        library.append(made)
    return library
