"""DocumentedTest.py BUILD PROGRAM… [-- TEST…]: whether help, man page and completions know the same
options, and those that the program takes."""

import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
import places

SPLIT = sys.argv.index("--") if "--" in sys.argv else len(sys.argv)
BUILD = Path(sys.argv[1])
PROGRAMS = sys.argv[2:SPLIT]
TESTS = sys.argv[SPLIT + 1 :]

COMPLETIONS = places.PROJECT / "Packaging" / "Completions"
OPTION = re.compile(r"(?<![\w/-])--?[a-z][a-z-]*")
# A word that is no option and no command of any program.
STRAY = "stray-word"


def help_of(program):
    return places.run(BUILD / "bin" / program, "--help")


def options_in(text):
    return set(OPTION.findall(text))


def commands_of(program):
    """The words that follow the program's name where a line of its help begins with it."""
    return set(re.findall(rf"(?m)^(?:Usage:)? +{program} ([a-z]+) ", help_of(program)))


def page_of(program):
    """The source of the man page, without its changes of font."""
    text = (BUILD / f"installed/man/{program}.1").read_text(encoding="utf-8")
    return re.sub(r"\\f[BIR]", "", text).replace("\\-", "-")


def offered_by_bash(program, *words):
    """What bash offers in place of the last of the words."""
    script = f"""
      source "$1"
      shift
      COMP_WORDS=("$@")
      COMP_CWORD=$(($# - 1))
      _{program}
      printf '%s\\n' "${{COMPREPLY[@]}}"
    """
    file = COMPLETIONS / f"{program}.bash"
    said = places.run("bash", "-c", script, "bash", file, program, *words)
    return {line for line in said.splitlines() if line}


def offered_by_zsh(program, *words):
    """What zsh offers in place of the last of the words; it shows what it offers to a terminal
    only, so a shell on one of its own is asked what its matches are."""
    script = COMPLETIONS.parents[1] / "Tests/Packages/offered-by-zsh"
    said = places.run("zsh", "-f", script, COMPLETIONS, " ".join([program, *words]))
    return {line for line in said.splitlines() if line}


def is_taken(program, *words):
    """Whether the program knows the last word as an option there. A word that is too many keeps it
    from doing anything."""
    command = [BUILD / "bin" / program, *words, STRAY, STRAY, STRAY]
    finished = subprocess.run(command, env={}, capture_output=True, text=True, timeout=60)
    return "knows no option" not in finished.stderr and (
        f"unknown argument {words[-1]}" not in finished.stderr
    )


class Documented(unittest.TestCase):
    def test_there_are_programs(self):
        self.assertLessEqual({"korvo", "mellel"}, set(PROGRAMS))

    def test_the_man_page_has_the_options_and_commands_of_the_help(self):
        for program in PROGRAMS:
            page = page_of(program)
            self.assertEqual(options_in(page), options_in(help_of(program)), program)
            for command in commands_of(program):
                self.assertRegex(page, rf"(?m)^{program} {command}\b")

    def test_the_man_page_is_set_without_a_complaint(self):
        for program in PROGRAMS:
            page = BUILD / f"installed/man/{program}.1"
            complaints = places.run("groff", "-man", "-ww", "-z", "-Tutf8", "-Kutf8", page)
            self.assertEqual(complaints, "")
            self.assertNotIn("@", "".join(page.read_text(encoding="utf-8").splitlines()[:1]))

    def test_both_shells_offer_the_commands_of_the_help_and_its_options(self):
        for program in PROGRAMS:
            commands = commands_of(program)
            self.assertTrue(commands)
            for offered in (offered_by_bash, offered_by_zsh):
                with self.subTest(program, shell=offered.__name__):
                    self.assertLessEqual(commands, offered(program, ""))
                    options = offered(program, "-")
                    for command in commands:
                        options |= offered(program, command, "-")
                    self.assertEqual(options, options_in(help_of(program)))

    def test_both_shells_offer_with_a_command_what_it_takes_and_no_more(self):
        for program in PROGRAMS:
            every = options_in(help_of(program)) - {"--help", "--version"}
            for command in commands_of(program):
                taken = {option for option in every if is_taken(program, command, option)}
                for offered in (offered_by_bash, offered_by_zsh):
                    with self.subTest(program, command=command, shell=offered.__name__):
                        found = offered(program, command, "-") - {"--help", "--version"}
                        self.assertEqual(found, taken)


class Offered(unittest.TestCase):
    """Values, in both shells."""

    def both(self, *words):
        bash, zsh = offered_by_bash(*words), offered_by_zsh(*words)
        self.assertEqual(bash, zsh)
        return bash

    def test_styles_are_offered_by_the_names_of_their_files(self):
        beginning, style = "american-geophysical-u", "american-geophysical-union"
        self.assertIn(style, self.both("mellel", "scan", "--style", beginning))
        self.assertIn(style, self.both("mellel", "live", "-o", "out.rtf", "--style", beginning))
        self.assertIn(style, self.both("korvo", "--favorite", beginning))
        self.assertIn(style, self.both("korvo", "--default-style", beginning))
        # bash makes three words of it.
        self.assertIn(style, offered_by_bash("mellel", "scan", "--style", "=", beginning))
        self.assertIn(style, offered_by_bash("korvo", "--favorite", "=", beginning))
        self.assertIn(style, offered_by_zsh("korvo", f"--favorite={beginning}"))

    def test_files_that_the_program_reads_are_offered(self):
        examples = places.PROJECT / "Examples"
        self.assertEqual(
            {Path(name).name for name in offered_by_bash("korvo", "--library", f"{examples}/l")},
            {"library.bib"},
        )
        self.assertEqual(
            {Path(name).name for name in offered_by_bash("mellel", "check", f"{examples}/d")},
            {"draft-libreoffice.rtf", "draft-textedit.rtf"},
        )


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *TESTS])
