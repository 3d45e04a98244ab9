"""InstallTest.py BUILD PROGRAM… [-- TEST…]: installs what was built, moves it elsewhere, and looks
whether it still works there; and whether what a program says of its options is said everywhere."""

import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
import places

SPLIT = sys.argv.index("--") if "--" in sys.argv else len(sys.argv)
BUILD = Path(sys.argv[1])
# Those that a user starts, by name.
PROGRAMS = sys.argv[2:SPLIT]
TESTS = sys.argv[SPLIT + 1 :]


class Installed(unittest.TestCase):
    def setUp(self):
        self.directory = places.temporary(self)
        first = self.directory / "first place"
        places.install(BUILD, first, "--strip")
        # From now on nothing is where it was installed.
        self.prefix = first.rename(self.directory / "second place")

    def test_the_demo_runs_wherever_it_was_moved(self):
        places.look_at_demo(self, self.prefix, self.directory / "what it made")

    def test_nothing_leads_back_to_where_it_was_built(self):
        programs = places.programs_of(self.prefix)
        names = {program.name for program in programs}
        wanted = {*PROGRAMS, "korvo-reader", "libPlatform.so", "KorvoMellelPlugin"}
        self.assertEqual(names, wanted)
        folders = [BUILD, places.PROJECT, self.directory]
        self.assertEqual(places.foreign_paths(programs, folders), [])

    def test_a_program_that_leads_back_is_noticed(self):
        # As it was linked, before it was installed.
        self.assertNotEqual(places.foreign_paths([BUILD / "bin/korvo"], [places.PROJECT]), [])
        program = self.directory / "elsewhere"
        options = ["-x", "c", "-", "-o", program, "-Wl,--enable-new-dtags,-rpath,/somewhere/lib"]
        subprocess.run(["gcc", *options], input="int main() {}", text=True, check=True)
        [fault] = places.foreign_paths([program], [])
        self.assertIn("/somewhere/lib", fault)

    def test_the_bundle_is_as_it_was_built(self):
        bundle = "KorvoMellelPlugin.bundle"
        built = BUILD / bundle / "Resources"
        there = self.prefix / "lib/korvo-mellel" / bundle / "Resources"
        self.assertEqual(places.files_of(built), places.files_of(there))
        self.assertGreater(len(places.files_of(there)), 20)

    def test_every_program_is_on_the_path_with_its_page_and_completions(self):
        files = places.files_of(self.prefix)
        self.assertEqual(
            {name for name in files if name.startswith("bin/")},
            {f"bin/{program}" for program in PROGRAMS},
        )
        for program in PROGRAMS:
            self.assertTrue((self.prefix / "bin" / program).is_file())
            self.assertIn(f"share/man/man1/{program}.1", files)
            self.assertIn(f"share/bash-completion/completions/{program}", files)
            self.assertIn(f"share/zsh/site-functions/_{program}", files)

    def test_the_desktop_entry_is_valid_and_has_its_icon(self):
        entry = self.prefix / "share/applications/korvo.desktop"
        self.assertEqual(places.run("desktop-file-validate", entry), "")
        words = dict(re.findall(r"^(\w+)=(.*)$", entry.read_text(encoding="utf-8"), re.M))
        self.assertIn(words["Exec"].split()[0], PROGRAMS)
        icons = self.prefix / "share/icons/hicolor"
        self.assertTrue((icons / "scalable/apps" / f"{words['Icon']}.svg").is_file())
        for size in (48, 128):
            icon = icons / f"{size}x{size}/apps" / f"{words['Icon']}.png"
            self.assertIn(f"PNG image data, {size} x {size},", places.run("file", icon))


class InstalledComponents(unittest.TestCase):
    def files_of_component(self, name):
        prefix = places.temporary(self) / name
        places.install(BUILD, prefix, "--component", name)
        return places.files_of(prefix)

    def test_the_word_processor_alone(self):
        self.assertEqual(
            self.files_of_component("mellel"),
            {
                "bin/mellel",
                "share/man/man1/mellel.1",
                "share/bash-completion/completions/mellel",
                "share/zsh/site-functions/_mellel",
            },
        )

    def test_the_plug_in_brings_the_library_that_it_shares_with_its_host(self):
        files = self.files_of_component("plugin")
        beside = {name for name in files if "KorvoMellelPlugin.bundle/" not in name}
        self.assertEqual(beside, {"lib/korvo-mellel/lib/libPlatform.so"})
        self.assertIn("lib/korvo-mellel/KorvoMellelPlugin.bundle/KorvoMellelPlugin", files)

    def test_together_they_are_all(self):
        components = ["documents", "korvo", "plugin", *(set(PROGRAMS) - {"korvo"})]
        together = set().union(*(self.files_of_component(name) for name in components))
        prefix = places.temporary(self) / "all"
        places.install(BUILD, prefix)
        self.assertEqual(together, places.files_of(prefix))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *TESTS])
