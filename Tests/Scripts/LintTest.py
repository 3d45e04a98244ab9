"""Tests of Scripts/lint: it notices one seeded fault of each kind, says where, and nothing else."""

import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "Scripts" / "Support"))

from linting import formatting, includes, own_rules, ownership, shell, tidy
from linting.clean import CleanFiles
from linting.project import LintError, Project

CONFIGURATION = (".clang-format", ".clang-tidy", ".prettierrc.json", "ruff.toml")
GOOD_CPP = "int twice(int number) { return 2 * number; }\n"
BRANCH_WITHOUT_BRACES = "int sign(int number) {\n  if (number < 0) return -1;\n  return 1;\n}\n"


class LintTest(unittest.TestCase):
    """A small project of its own, with the rules of this one."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory(prefix="LintTest.")
        self.addCleanup(directory.cleanup)
        self.root = Path(directory.name).resolve()
        for name in CONFIGURATION:
            shutil.copy(PROJECT / name, self.root)
        self.git("init", "--quiet", "--initial-branch=main")
        self.write(".gitignore", "/build/\n")
        self.git("add", "--all")
        self.git("commit", "--quiet", "--message=Rules")

    def git(self, *arguments):
        identity = ("-c", "user.name=Test", "-c", "user.email=test@localhost")
        subprocess.run(["git", "-C", self.root, *identity, *arguments], check=True)

    def write(self, path, text):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text, encoding="utf-8")

    def found(self, rule, *arguments, **options):
        """(path, line, name of the rule) of each finding."""
        with CleanFiles(self.root / "build" / "lint") as clean:
            findings = rule(Project(self.root), clean, *arguments, **options)
            return [(each.path, each.line, each.rule) for each in findings]

    def own(self):
        return [
            (each.path, each.line, each.rule) for each in own_rules.findings(Project(self.root))
        ]

    def commands(self, *paths):
        entries = [
            {
                "directory": str(self.root),
                "command": f"ccache g++ -I{self.root} -std=c++23 -o {path}.o -c {self.root / path}",
                "file": str(self.root / path),
            }
            for path in paths
        ]
        self.write("build/compile_commands.json", json.dumps(entries))
        return tidy.compile_commands(
            Project(self.root), self.root / "build" / "compile_commands.json"
        )

    def tidied(self, *paths, everything=True):
        return self.found(tidy.findings, self.commands(*paths), everything=everything)


class IncludedHeaders(LintTest):
    def missing(self, **options):
        return [
            (each.path, each.line, each.rule)
            for each in includes.findings(Project(self.root), **options)
        ]

    def test_what_a_source_or_a_header_of_ours_asks_for_is_there(self):
        self.write("Room/Size.h", "#pragma once\n#include <cstdint>\nstd::uint8_t size();\n")
        self.write("Room/Middle.h", '#include "Size.h"\n')
        self.write("Room/Size.cpp", '#include "Size.h"\nstd::uint8_t size() { return 1; }\n')
        self.write("Other/User.mm", "#import <Room/Middle.h>\nstd::uint8_t twice();\n")
        self.write("Own.cpp", "#include <map>\n// std::vector\nstd::map<int, int> *none;\n")
        self.assertEqual(self.missing(), [])

    def test_what_another_header_of_the_library_happens_to_bring_is_not(self):
        self.write("Room/Bad.cpp", "#include <vector>\n\nstd::uint8_t a;\nstd::uint16_t b;\n")
        self.write("Bad.h", "#pragma once\nstd::string text();\n")
        self.assertEqual(self.missing(), [("Bad.h", 2, "include"), ("Room/Bad.cpp", 3, "include")])

    def test_what_is_missing_is_added(self):
        self.write("First.cpp", "#include <vector>\nstd::vector<std::string> *texts;\n")
        self.write("Bad.h", "#pragma once\nstd::string text();\n")
        self.write("None.cpp", "std::string text;\n")
        self.assertEqual(self.missing(fix=True), [])
        self.assertEqual(self.missing(), [])
        self.assertEqual(self.found(formatting.findings, fix=True), [])
        self.assertIn("#include <string>\n", (self.root / "None.cpp").read_text())
        self.assertTrue((self.root / "Bad.h").read_text().startswith("#pragma once\n"))

    def test_objective_cpp_reaches_no_gmock(self):
        self.write("Support.h", "#include <gmock/gmock.h>\n")
        self.write("Good.cpp", '#include "Support.h"\n')
        self.write("Good.mm", "#include <gmock/gmock-more-matchers.h>\n")
        self.write("Bad.mm", '#import "Support.h"\n')
        self.assertEqual(self.missing(), [("Bad.mm", 1, "gmock")])

    def test_headers_that_include_each_other_come_to_an_end(self):
        self.write("A.h", '#include "B.h"\nstd::string a();\n')
        self.write("B.h", '#include "A.h"\n#include <string>\n')
        self.assertEqual(self.missing(), [])


class Formats(LintTest):
    def test_good_sources_have_no_findings(self):
        self.write("Good.cpp", GOOD_CPP)
        self.write("good.js", 'const good = "yes";\n')
        self.write("good.py", 'print("good")\n')
        self.write("good", "#!/usr/bin/env bash\nprintf 'good\\n'\n")
        self.assertEqual(self.found(formatting.findings), [])
        self.assertEqual(self.found(shell.findings), [])
        self.assertEqual(self.own(), [])

    def test_cpp_is_as_clang_format_has_it(self):
        self.write("Room/Bad.h", "int good;\nint  bad;\n")
        self.write("Room/Bad.mm", "int bad() { if (true) return 1; return 0; }\n")
        self.assertEqual(
            self.found(formatting.findings),
            [("Room/Bad.h", 2, "format"), ("Room/Bad.mm", 1, "format")],
        )

    def test_javascript_is_as_prettier_has_it(self):
        self.write("bad.js", "const good = 1;\nconst bad = 'no'\n")
        self.write("broken.mjs", "const = ;\n")
        self.assertEqual(
            self.found(formatting.findings), [("bad.js", 2, "format"), ("broken.mjs", 1, "format")]
        )

    def test_python_is_as_ruff_has_it(self):
        self.write("bad.py", "good = 1\nbad = 'no'\n")
        self.write("command", "#!/usr/bin/env python3\nbad=1\n")
        self.assertEqual(
            self.found(formatting.findings), [("bad.py", 2, "format"), ("command", 2, "format")]
        )

    def test_python_is_checked(self):
        self.write("bad.py", "import os\n\nprint(nothing)\n")
        self.assertEqual(
            self.found(formatting.findings),
            [("bad.py", 1, "ruff F401"), ("bad.py", 3, "ruff F821")],
        )

    def test_fix_formats(self):
        self.write("Bad.cpp", "int  bad;\n")
        self.write("bad.js", "const bad = 'no'\n")
        self.write("bad.py", "bad = 'no'\n")
        self.assertEqual(self.found(formatting.findings, fix=True), [])
        self.assertEqual((self.root / "Bad.cpp").read_text(), "int bad;\n")
        self.assertEqual((self.root / "bad.js").read_text(), 'const bad = "no";\n')
        self.assertEqual((self.root / "bad.py").read_text(), 'bad = "no"\n')
        self.assertEqual(self.found(formatting.findings), [])

    def test_what_was_clean_and_has_changed_is_looked_at_again(self):
        self.write("File.cpp", "int good;\n")
        self.assertEqual(self.found(formatting.findings), [])
        self.write("File.cpp", "int  bad;\n")
        self.assertEqual(self.found(formatting.findings), [("File.cpp", 1, "format")])


class OwnRules(LintTest):
    def test_no_line_is_longer_than_100_columns(self):
        for path in ("Long.cpp", "long.js", "long.py", "Room/CMakeLists.txt", "long.sh"):
            self.write(path, "\n" + "x" * 101 + "\n" + "é" * 100 + "\n")
        self.write("prose.md", "x" * 101 + "\n")
        paths = ("Long.cpp", "Room/CMakeLists.txt", "long.js", "long.py", "long.sh")
        self.assertEqual(self.own(), [(path, 2, "columns") for path in paths])

    def test_no_two_changes_meet_undecided(self):
        self.write("page.md", "One\n" + "<" * 7 + " HEAD\nTwo\n" + ">" * 7 + " other\n")
        self.assertEqual(self.own(), [("page.md", 2, "conflict"), ("page.md", 4, "conflict")])

    def test_no_timer_that_leaks(self):
        self.write(
            "Bad.mm",
            "// performSelector:x afterDelay:0 inModes:y is spoken of only.\n"
            "void f() {\n"
            "  [self performSelector:@selector(g) withObject:nil afterDelay:0];\n"
            "  [self performSelector:@selector(g)\n"
            "             withObject:nil\n"
            "             afterDelay:0\n"
            "                inModes:modes];\n"
            "  [loop addTimer:timer forMode:mode];\n"
            "}\n",
        )
        self.write("Tests/Good.mm", "void f() {\n  [loop addTimer:timer forMode:mode];\n}\n")
        self.assertEqual(
            self.own(), [("Bad.mm", 4, "leaking-timer"), ("Bad.mm", 8, "leaking-timer")]
        )

    def test_the_stand_ins_print_in_one_place_only(self):
        statements = (
            "#include <iostream>",
            "std::cout << name;",
            "cerr << name;",
            'std::println("{}", name);',
            "printf(name);",
            "std::fprintf(stream, name);",
            "dprintf(2, name);",
            "puts(name);",
            "std::fwrite(name, 1, 1, stream);",
            "write(2, name, 1);",
            "::write(STDERR_FILENO, name, 1);",
            "perror(name);",
            "auto *stream = stderr;",
        )
        self.write("StandIns/Bad.mm", "".join(f"{each}\n" for each in statements))
        self.write(
            "StandIns/Good.mm",
            "#include <cstdio>\n"
            "// std::cout is not for us\n"
            "terminal::print(text);\n"
            "std::snprintf(buffer, 10, text);\n"
            "write(descriptor, text, 1);\n"
            'NSLog(@"%@", text);\n',
        )
        self.write("StandIns/Terminal/Output.cpp", "std::cout << text;\n")
        self.write("Tests/Other.cpp", "std::cout << text;\n")
        places = [("StandIns/Bad.mm", line + 1, "printing") for line in range(len(statements))]
        self.assertEqual(sorted(set(self.own())), places)


class Shell(LintTest):
    def test_scripts_are_as_shellcheck_has_them(self):
        self.write("Scripts/bad", "#!/usr/bin/env bash\nset -e\nrm $1\n")
        self.assertEqual(self.found(shell.findings), [("Scripts/bad", 3, "SC2086")])
        self.assertEqual(self.found(shell.findings), [("Scripts/bad", 3, "SC2086")])


class ClangTidy(LintTest):
    def test_faults_are_found_where_they_are(self):
        self.write("Room/Good.cpp", GOOD_CPP)
        self.write("Room/Bad.cpp", "\n" + BRANCH_WITHOUT_BRACES)
        self.assertEqual(
            self.tidied("Room/Good.cpp", "Room/Bad.cpp"),
            [("Room/Bad.cpp", 3, "readability-braces-around-statements")],
        )

    def test_headers_are_looked_at_and_told_once(self):
        self.write("Room/Bad.h", "#pragma once\ninline " + BRANCH_WITHOUT_BRACES)
        self.write("Room/A.cpp", '#include "Bad.h"\nint a() { return sign(1); }\n')
        self.write("Other/B.cpp", "#include <Room/Bad.h>\nint b() { return sign(2); }\n")
        self.assertEqual(
            self.tidied("Room/A.cpp", "Other/B.cpp"),
            [("Room/Bad.h", 3, "readability-braces-around-statements")],
        )

    def test_sources_with_local_functions_of_one_name_are_all_read(self):
        fault = "static " + BRANCH_WITHOUT_BRACES
        paths = [f"Room/{name}.cpp" for name in "ABC"]
        for path, letter in zip(paths, "abc", strict=True):
            self.write(path, fault + f"int {letter}() {{ return sign(1); }}\n")
        self.assertEqual(
            self.tidied(*paths),
            [(path, 2, "readability-braces-around-statements") for path in paths],
        )

    def test_sources_that_the_build_compiles_together_are_read_each(self):
        paths = ["Tests/A.cpp", "Tests/B.cpp"]
        for path in paths:
            self.write(path, "static " + BRANCH_WITHOUT_BRACES)
        lines = [f'#include "{self.root / path}"\n' for path in paths]
        self.write("build/Tests/ATest.together/1.cpp", "".join(lines))
        self.assertEqual(
            self.tidied("build/Tests/ATest.together/1.cpp"),
            [(path, 2, "readability-braces-around-statements") for path in paths],
        )

    def test_a_source_that_cannot_be_compiled_is_said(self):
        self.write("Room/Bad.cpp", "int bad() { return nothing; }\n")
        self.assertEqual(self.tidied("Room/Bad.cpp"), [("Room/Bad.cpp", 1, tidy.BROKEN)])

    def test_objective_cpp_is_read(self):
        self.write("Room/Bad.mm", "@class Thing;\n" + BRANCH_WITHOUT_BRACES)
        self.assertEqual(
            self.tidied("Room/Bad.mm"), [("Room/Bad.mm", 3, "readability-braces-around-statements")]
        )

    def test_what_did_not_change_since_main_is_left_out(self):
        self.write("Room/Old.cpp", BRANCH_WITHOUT_BRACES)
        self.write("Room/Deep.h", "#pragma once\n")
        self.write("Room/Used.h", '#pragma once\n#include "Deep.h"\n')
        self.write("Room/User.cpp", '#include "Used.h"\n' + BRANCH_WITHOUT_BRACES)
        self.git("add", "--all")
        self.git("commit", "--quiet", "--message=First")
        sources = ("Room/Old.cpp", "Room/User.cpp", "Room/New.cpp")
        self.assertEqual(self.tidied(*sources, everything=False), [])
        self.write("Room/Deep.h", "#pragma once\nextern int deep;\n")
        self.write("Room/New.cpp", BRANCH_WITHOUT_BRACES.replace("sign", "signOfNew"))
        rule = "readability-braces-around-statements"
        self.assertEqual(
            self.tidied(*sources, everything=False),
            [("Room/New.cpp", 2, rule), ("Room/User.cpp", 3, rule)],
        )

    def test_of_all_tests_only_changed_ones_are_read(self):
        self.write("Room/Old.cpp", BRANCH_WITHOUT_BRACES)
        self.write("Tests/Old.cpp", BRANCH_WITHOUT_BRACES)
        self.git("add", "--all")
        self.git("commit", "--quiet", "--message=First")
        self.write("Tests/New.cpp", BRANCH_WITHOUT_BRACES)
        rule = "readability-braces-around-statements"
        self.assertEqual(
            sorted(self.tidied("Room/Old.cpp", "Tests/Old.cpp", "Tests/New.cpp")),
            [("Room/Old.cpp", 2, rule), ("Tests/New.cpp", 2, rule)],
        )

    def test_what_was_clean_is_not_read_again_until_a_header_changes(self):
        self.write("Room/Header.h", "#pragma once\n")
        self.write("Room/Source.cpp", '#include "Header.h"\n' + GOOD_CPP)
        self.assertEqual(self.tidied("Room/Source.cpp"), [])
        together = self.root / "build" / "lint" / f"{tidy.TOGETHER}-0-0.cpp"
        together.unlink()
        self.assertEqual(self.tidied("Room/Source.cpp"), [])
        self.assertFalse(together.exists())
        self.write("Room/Header.h", "#pragma once\ninline " + BRANCH_WITHOUT_BRACES)
        self.assertEqual(
            self.tidied("Room/Source.cpp"),
            [("Room/Header.h", 3, "readability-braces-around-statements")],
        )


class Ownership(LintTest):
    """What the analyser itself finds is tested with the command that runs it."""

    def analyser(self, script):
        self.write(ownership.COMMAND, "#!/bin/sh\n" + script)
        (self.root / ownership.COMMAND).chmod(0o755)
        self.write("Plugin/Agent.mm", "// An agent.\n")

    def test_a_finding_of_the_analyser_is_one_of_lint(self):
        self.analyser(
            f'echo "{self.root}/Plugin/Agent.mm:7:3: error: Potential leak" >&2; exit 1\n'
        )
        found = self.found(ownership.findings, "build")
        self.assertEqual(found, [("Plugin/Agent.mm", 7, "ownership")])

    def test_what_was_clean_is_not_analysed_again_until_it_changes(self):
        self.analyser('echo once >>"$(dirname "$0")/runs"\n')
        for _ in range(2):
            self.assertEqual(self.found(ownership.findings, "build"), [])
        self.write("Plugin/Agent.mm", "// Another agent.\n")
        self.assertEqual(self.found(ownership.findings, "build"), [])
        runs = self.root / Path(ownership.COMMAND).parent / "runs"
        self.assertEqual(runs.read_text(), "once\nonce\n")

    def test_an_analyser_that_fails_without_a_finding_is_told(self):
        self.analyser("echo no compiler >&2; exit 2\n")
        with self.assertRaises(LintError):
            self.found(ownership.findings, "build")


if __name__ == "__main__":
    unittest.main()
