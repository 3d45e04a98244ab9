"""PackageTest.py VERSION BUILD FOLDER [-- TEST…]: looks at the Debian package that was made in
FOLDER, and at an archive of the sources; nothing is installed into this system."""

import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
import places

VERSION = sys.argv[1]
BUILD = Path(sys.argv[2])
FOLDER = Path(sys.argv[3])
TESTS = sys.argv[sys.argv.index("--") + 1 :] if "--" in sys.argv else []


class DebianPackage(unittest.TestCase):
    def setUp(self):
        self.directory = places.temporary(self)
        # One of another version may lie there from before.
        [self.package] = FOLDER.glob(f"korvo-mellel_{VERSION}-*.deb")

    def unpacked(self):
        place = self.directory / "unpacked elsewhere"
        places.run("dpkg-deb", "-x", self.package, place)
        return place / "usr"

    def field(self, name):
        return places.run("dpkg-deb", "-f", self.package, name).strip()

    def test_the_demo_runs_from_where_it_was_unpacked(self):
        places.look_at_demo(self, self.unpacked(), self.directory / "what it made")

    def test_it_bears_the_version_and_the_release(self):
        release = Path("/etc/os-release").read_text(encoding="utf-8")
        number = re.search(r'^VERSION_ID="(\d+)"', release, re.M)[1]
        architecture = places.run("dpkg", "--print-architecture").strip()
        self.assertEqual(self.field("Version"), f"{VERSION}-1~deb{number}")
        self.assertEqual(self.field("Architecture"), architecture)
        changes = self.unpacked() / "share/doc/korvo-mellel/changelog.Debian.gz"
        first = places.run("dpkg-parsechangelog", "--file", changes, "--show-field", "Version")
        self.assertEqual(first.strip(), self.field("Version"))
        name = f"korvo-mellel_{VERSION}-1~deb{number}_{architecture}.deb"
        self.assertEqual(self.package.name, name)

    def test_it_asks_for_the_libraries_and_for_what_is_found_at_run_time(self):
        wanted = [line.split(" (")[0] for line in self.field("Depends").split(", ")]
        for line in (places.SCRIPTS / "packages.txt").read_text(encoding="utf-8").splitlines():
            if line.endswith("# to run"):
                self.assertIn(line.split("#")[0].strip(), wanted)
        libraries = {
            name
            for program in places.programs_of(self.unpacked())
            for name in re.findall(
                r"\(NEEDED\).*\[(.*)\]", places.run("readelf", "--wide", "--dynamic", program)
            )
        }
        self.assertGreater(len(libraries), 8)
        others = libraries - {"libPlatform.so"}
        found = places.run("dpkg-query", "--search", *(f"*/{library}" for library in others))
        owned = [(Path(line).name, line.split(":")[0]) for line in found.splitlines()]
        for library in others:
            packages = {package for name, package in owned if name == library}
            self.assertTrue(packages & set(wanted), f"{library}, of {packages}")
        self.assertFalse([name for name in wanted if name.endswith("-dev")])
        self.assertIn("gnustep-back", self.field("Depends"))

    def test_all_that_is_installed_is_in_it_where_debian_looks_for_it(self):
        prefix = self.directory / "installed"
        places.install(BUILD, prefix)
        installed = "\n".join(sorted(places.files_of(prefix)))
        for pattern, place in (
            ("zsh/site-functions", "zsh/vendor-completions"),
            (r"(man/man1/\w+\.1)", r"\1.gz"),
            (r"(korvo-mellel)/CHANGELOG\.md", r"\1/changelog.gz\nshare/doc/\1/changelog.Debian.gz"),
        ):
            installed, count = re.subn(pattern, place, installed)
            self.assertGreater(count, 0, pattern)
        self.assertEqual(places.files_of(self.unpacked()), set(installed.split("\n")))

    def test_nothing_leads_back_to_where_it_was_built(self):
        programs = places.programs_of(self.unpacked())
        self.assertGreaterEqual(len(programs), 4)
        folders = [BUILD, places.PROJECT, self.directory]
        self.assertEqual(places.foreign_paths(programs, folders), [])

    def test_it_is_roots_and_nobody_else_may_write(self):
        for line in places.run("dpkg-deb", "--contents", self.package).splitlines():
            mode, owner = line.split()[:2]
            self.assertEqual(owner, "root/root", line)
            if not mode.startswith("l"):
                self.assertNotIn("w", mode[4:], line)


@unittest.skipUnless((places.PROJECT / ".git").exists(), "this is no clone")
class SourceArchive(unittest.TestCase):
    def setUp(self):
        self.directory = places.temporary(self)
        name = f"korvo-mellel-{VERSION}"
        places.run(places.SCRIPTS / "Support" / "archive-sources", VERSION, self.directory)
        places.run("tar", "-xf", self.directory / f"{name}.tar.gz", "-C", self.directory)
        self.sources = self.directory / name

    def test_it_holds_what_was_committed_and_nothing_else(self):
        tree = subprocess.run(
            ["git", "-C", places.PROJECT, "ls-tree", "-r", "-z", "--name-only", "HEAD"],
            capture_output=True,
            text=True,
            check=True,
        )
        committed = set(tree.stdout.split("\0")) - {""}
        self.assertGreater(len(committed), 500)
        self.assertEqual(places.files_of(self.sources), committed)

    def test_lint_says_in_one_line_that_it_wants_a_clone(self):
        finished = subprocess.run([self.sources / "Scripts/lint"], capture_output=True, text=True)
        self.assertEqual((finished.returncode, finished.stdout), (2, ""))
        self.assertRegex(finished.stderr, r"\Alint: .* is no clone: .*\n\Z")

    def test_it_can_be_configured(self):
        said = places.run("cmake", "-S", self.sources, "-B", self.directory / "b", "-G", "Ninja")
        self.assertIn("Generating done", said)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *TESTS])
