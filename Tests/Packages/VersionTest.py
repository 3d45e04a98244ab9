"""VersionTest.py VERSION BUILD PROGRAM… [-- TEST…]: whether everything that tells a version tells
that of the project."""

import re
import subprocess
import sys
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]

SPLIT = sys.argv.index("--") if "--" in sys.argv else len(sys.argv)
VERSION = sys.argv[1]
BUILD = Path(sys.argv[2])
PROGRAMS = [Path(path) for path in sys.argv[3:SPLIT]]
TESTS = sys.argv[SPLIT + 1 :]


class Version(unittest.TestCase):
    def test_every_program_tells_it(self):
        self.assertGreaterEqual(len(PROGRAMS), 3)
        for program in PROGRAMS:
            with self.subTest(program=program.name):
                said = subprocess.run([program, "--version"], capture_output=True, text=True)
                self.assertEqual(
                    (said.returncode, said.stdout, said.stderr),
                    (0, f"{program.name} {VERSION}\n", ""),
                )

    def test_the_list_of_changes_begins_with_it(self):
        text = (PROJECT / "CHANGELOG.md").read_text(encoding="utf-8")
        newest = re.search(r"^## (\S+)", text, re.M)
        self.assertEqual(newest[1], VERSION)

    def test_packages_are_named_after_it_in_the_documentation(self):
        pages = [PROJECT / "README.md", *(PROJECT / "Documentation").glob("*.md")]
        text = "\n".join(page.read_text(encoding="utf-8") for page in pages)
        self.assertEqual(set(re.findall(r"korvo-mellel_([0-9.]+)-", text)), {VERSION})

    def test_the_bundle_tells_it(self):
        path = BUILD / "KorvoMellelPlugin.bundle/Resources/Info-gnustep.plist"
        text = path.read_text(encoding="utf-8")
        self.assertEqual(re.findall(r'CFBundleShortVersionString = "(.*)";', text), [VERSION])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *TESTS])
