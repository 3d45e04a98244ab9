"""Tests of Scripts/mutate: what it changes, what it leaves alone, and that nothing of it stays."""

import importlib.machinery
import importlib.util
import os
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "Scripts" / "Support"))

from mutation import workshop as workshops
from mutation.explanations import find_explanation, read_explanations
from mutation.mutants import mutants_of
from mutation.tokens import tokens_of
from mutation.workshop import Deadline, TimeIsUp, Workshop, copy_project


def in_function(statements):
    return "int function(int a, int b) {\n  " + statements + "\n}\n"


def results(operator, statements):
    """What becomes of the statements of a function."""
    source = in_function(statements)
    start, end = len(in_function("")) - 3, -3
    return [
        m.apply(source)[start:end] for m in mutants_of("File.cpp", source) if m.operator == operator
    ]


class Mutants(unittest.TestCase):
    def test_comparisons_are_turned_and_their_borders_moved(self):
        self.assertEqual(results("comparison", "g(a < b);"), ["g(a <= b);", "g(a >= b);"])
        self.assertEqual(results("comparison", "g(a == b);"), ["g(a != b);"])

    def test_constants_become_their_neighbours(self):
        self.assertEqual(results("constant", "g(7);"), ["g(6);", "g(8);"])
        self.assertEqual(results("constant", "g(0x7Fu);"), ["g(0x7eu);", "g(0x80u);"])
        self.assertEqual(results("constant", "g(0);"), ["g(1);"])
        self.assertEqual(results("constant", "g(10'000);"), ["g(10001);", "g(9999);"])
        self.assertEqual(
            results("constant", "g(u'a', '\\\\');"), ["g(u'\\x62', '\\\\');", "g(u'a', '\\x5d');"]
        )
        self.assertEqual(results("constant", "g(true, NO);"), ["g(false, NO);", "g(true, YES);"])

    def test_arithmetic_is_turned_into_its_inverse(self):
        self.assertEqual(results("arithmetic", "a += b * 2;"), ["a -= b * 2;", "a += b / 2;"])
        self.assertEqual(results("arithmetic", "++a;"), ["--a;"])

    def test_boolean_operators_are_exchanged_and_negations_dropped(self):
        self.assertEqual(results("boolean", "g(a && !b);"), ["g(a || !b);", "g(a && b);"])
        self.assertEqual(results("boolean", "g(a & b);"), ["g(a | b);"])

    def test_conditions_are_negated(self):
        self.assertEqual(results("condition", "if (a) { g(b); }"), ["if (!(a)) { g(b); }"])

    def test_values_returned_are_emptied_once(self):
        self.assertEqual(results("return value", "return a;"), ["return {};"])
        self.assertEqual(results("return value", "return {};"), [])
        self.assertEqual(results("return value", "return nil;"), [])

    def test_statements_are_deleted_and_declarations_are_not(self):
        self.assertEqual(results("deletion", "int c = a; g(c);"), ["int c = a; ;"])
        self.assertEqual(results("deletion", "[[maybe_unused]] const int c = g(a);"), [])
        self.assertEqual(
            results("deletion", "NSString *text = [a b]; [text release];"),
            ["NSString *text = [a b]; ;"],
        )
        self.assertEqual(results("deletion", "for (;;) { break; }"), ["for (;;) { ; }"])

    def test_neighbouring_statements_change_places(self):
        self.assertEqual(results("order", "g(a); h(b);"), ["h(b); g(a);"])
        self.assertEqual(results("order", "g(a); return b;"), [])
        self.assertEqual(results("order", "g(a); if (b) { h(b); } g(b);"), [])

    def test_statements_inside_a_lambda_are_statements(self):
        self.assertEqual(
            results("deletion", "each([&](int c) { g(c); });"), [";", "each([&](int c) { ; });"]
        )

    def test_methods_of_objective_c_are_bodies(self):
        source = "@implementation Thing (Part)\n\n- (void)run {\n  [self stop];\n}\n\n@end\n"
        self.assertEqual(
            [str(m) for m in mutants_of("File.mm", source)], ["File.mm:4: [self stop]; → ;"]
        )

    def test_comments_strings_directives_and_template_brackets_stay(self):
        source = "#include <a>\n#define X 1 < 2\n// 1 < 2\n/* 3 + 4 */\n" + in_function(
            'g<int>("1 < 2 \\" && 3");'
        )
        self.assertEqual([m.operator for m in mutants_of("File.cpp", source)], ["deletion"])

    def test_no_line_moves_and_no_two_mutants_are_alike(self):
        for path in sorted((PROJECT / "Formats").glob("*.cpp")):
            source = path.read_text(encoding="utf-8")
            mutants = mutants_of(path.name, source)
            texts = [mutant.apply(source) for mutant in mutants]
            self.assertNotIn(source, texts)
            self.assertEqual(len(set(texts)), len(texts))
            for mutant, text in zip(mutants, texts, strict=True):
                self.assertEqual(text.count("\n"), source.count("\n"), mutant)

    def test_tokens_and_what_lies_between_them_are_the_source(self):
        for path in sorted((PROJECT / "Plugin/KorvoMellelPlugin").glob("*.mm")):
            source = path.read_text(encoding="utf-8")
            end = 0
            for token in tokens_of(source):
                self.assertEqual(source[token.start : token.end], token.text)
                self.assertGreaterEqual(token.start, end)
                end = token.end

    def test_the_same_seed_chooses_the_same_mutants(self):
        def listed(seed):
            options = ["--list", "--count", "20", "--seed", seed, "Formats/Unicode.cpp"]
            command = [sys.executable, PROJECT / "Scripts/mutate", *options]
            return subprocess.run(
                command, check=True, capture_output=True, text=True, cwd=PROJECT
            ).stdout.splitlines()

        self.assertEqual(len(listed("7")), 20)
        self.assertEqual(listed("7"), listed("7"))
        self.assertNotEqual(listed("7"), listed("8"))


class Places(unittest.TestCase):
    def test_a_place_that_is_none_is_refused_in_one_line(self):
        for place, complaint in {
            "Formats/Nowhere.cpp": "there is no such file",
            "Formats": "not a source",
            "Formats/CMakeLists.txt": "not a source",
            "README.md": "not a source",
            "/dev/null": "not a source",
            "Formats/Unicode.cpp:": "not a line of the file",
            "Formats/Unicode.cpp:x": "not a line of the file",
            "Formats/Unicode.cpp:0": "not a line of the file",
            "Formats/Unicode.cpp:99999": "not a line of the file",
        }.items():
            command = [sys.executable, PROJECT / "Scripts/mutate", "--list", place]
            run = subprocess.run(command, check=False, capture_output=True, text=True, cwd=PROJECT)
            self.assertEqual((run.returncode, run.stdout), (2, ""), place)
            self.assertRegex(run.stderr, rf"\Amutate: {place}: .*{complaint}.*\n\Z")


class RunOverFiles(unittest.TestCase):
    def test_every_file_is_taken_once_whatever_folder_a_worker_would_rather_have(self):
        loader = importlib.machinery.SourceFileLoader("mutate", str(PROJECT / "Scripts" / "mutate"))
        program = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", loader))
        loader.exec_module(program)
        files = ["Formats/A.cpp", "Formats/B.cpp", "Plugin/C.mm", "Plugin/D.mm"]
        for folder in ("Formats", "Plugin", "nowhere"):
            mutants = [m for file in files for m in mutants_of(file, in_function("g(a < b);"))]
            run = program.Run(mutants, [], None)
            taken = [run.take(folder) for _ in files]
            self.assertEqual(sorted(taken), files)
            self.assertIsNone(run.take(folder))


class Explanations(unittest.TestCase):
    def read(self, text):
        with tempfile.TemporaryDirectory() as directory:
            path = Path(directory) / "explanations"
            path.write_text(text, encoding="utf-8")
            return read_explanations(path)

    def test_one_is_found_by_its_lines_wherever_these_are(self):
        explanations = self.read(
            "# What this is.\n\nFile.cpp\n- g(a  <  b);\n+ g(a <= b);\nNever equal\nhere.\n"
        )
        mutants = mutants_of("File.cpp", "\n\n" + in_function("g(a < b);"))
        found = [find_explanation(explanations, mutant) for mutant in mutants]
        self.assertEqual([e.reason for e in found if e], ["Never equal here."])

    def test_one_may_be_for_several_mutants_of_a_line(self):
        mutants = [
            m
            for m in mutants_of("File.cpp", in_function("g(a < b);"))
            if m.operator == "comparison"
        ]
        several = self.read("File.cpp\n- g(a < b);\n+ g(a <= b);\n+ g(a >= b);\nNever asked.\n")
        self.assertEqual(
            [find_explanation(several, m).reason for m in mutants], ["Never asked.", "Never asked."]
        )

    def test_one_may_be_for_a_line_behind_another(self):
        explanations = self.read("File.cpp\n  if (a) {\n- g();\n+ ;\nNever asked.\n")
        mutants = mutants_of("File.cpp", in_function("if (b) {\n  g();\n}\nif (a) {\n  g();\n}"))
        self.assertEqual([m.line for m in mutants if find_explanation(explanations, m)], [6])

    def test_one_without_a_reason_is_refused(self):
        with self.assertRaisesRegex(ValueError, "reason"):
            self.read("File.cpp\n- g(a < b);\n+ g(a <= b);\n")

    def test_each_of_the_project_is_of_a_mutant_that_there_is(self):
        explanations = read_explanations(PROJECT / "Scripts" / "Support" / "equivalent-mutants")
        self.assertGreater(len(explanations), 50)
        mutants = {
            file: mutants_of(file, (PROJECT / file).read_text(encoding="utf-8"))
            for file in {explanation.file for explanation in explanations}
        }
        for explanation in explanations:
            with self.subTest(file=explanation.file, line=explanation.before):
                found = [find_explanation([explanation], m) for m in mutants[explanation.file]]
                self.assertTrue(any(found))


# The smallest project that has what the workshop looks for: sources, and a test program that
# takes its options and writes its report.
CMAKE = """cmake_minimum_required(VERSION 3.25)
project(Small LANGUAGES CXX)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
add_executable(SmallTest Sum.cpp Test.cpp)
"""
SUM = """int sum(int count) {
  int result = 0;
  for (int number = 1; number <= count; ++number) {
    result += number;
  }
  if (count == 7) {
    result = 28;
  }
  const int nobodyLooks = 0 * count;
  return result + nobodyLooks;
}
"""
TEST = """#include <fstream>
#include <string_view>
int sum(int);
int main(int count, char **arguments) {
  constexpr std::string_view option = "--gtest_output=json:";
  for (int index = 1; index < count; ++index) {
    const std::string_view argument = arguments[index];
    if (argument.starts_with(option)) {
      std::ofstream(arguments[index] + option.size()) << R"({"testsuites": []})";
    }
  }
  return sum(4) == 10 ? 0 : 1;
}
"""


def contents(directory):
    return {
        path.relative_to(directory): path.read_bytes()
        for path in directory.rglob("*")
        if path.is_file()
    }


class WorkshopOfMutants(unittest.TestCase):
    def setUp(self):
        self.temporary = tempfile.TemporaryDirectory()
        self.addCleanup(self.temporary.cleanup)
        self.project = Path(self.temporary.name) / "project"
        self.project.mkdir()
        flags = "set(CMAKE_CXX_STANDARD 20)\n"
        (self.project / "CMakeLists.txt").write_text(CMAKE.replace("add_exec", flags + "add_exec"))
        (self.project / "Sum.cpp").write_text(SUM)
        (self.project / "Test.cpp").write_text(TEST)

    def mutant(self, after):
        return next(m for m in mutants_of("Sum.cpp", SUM) if m.after == after)

    def test_mutants_are_told_apart_and_both_trees_stay_as_they_were(self):
        before = contents(self.project)
        workshop = Workshop(self.project, Path(self.temporary.name) / "work", Deadline(100))
        workshop.prepare(["SmallTest"], "Sum.cpp")
        for after, outcome in {
            "result -= number;": "caught",
            "for (int number = 1; number > count; ++number) {": "caught",
            "if (count == 8) {": "survived",
            "const int nobodyLooks = 0 / count;": "same code",
        }.items():
            self.assertEqual(workshop.try_mutant(self.mutant(after), ["SmallTest"]), outcome, after)
            self.assertEqual(contents(workshop.copy), before)
        self.assertEqual(contents(self.project), before)

    def test_a_mutant_that_never_ends_is_ended(self):
        source = SUM.replace("++number", "number += 1")
        (self.project / "Sum.cpp").write_text(source)
        workshop = Workshop(self.project, Path(self.temporary.name) / "work", Deadline(100))
        workshop.prepare(["SmallTest"], "Sum.cpp")
        after = "for (int number = 1; number <= count; number += 0) {"
        mutant = next(m for m in mutants_of("Sum.cpp", source) if m.after == after)
        self.assertEqual(workshop.try_mutant(mutant, ["SmallTest"]), "timed out")

    def test_a_mutant_that_waits_for_ever_is_ended(self):
        source = 'extern "C" int pause();\n' + SUM.replace(
            "if (count == 7) {", "if (count == 7) {\n    pause();"
        )
        (self.project / "Sum.cpp").write_text(source)
        patience, workshops.WAITING_SECONDS = workshops.WAITING_SECONDS, 2
        self.addCleanup(setattr, workshops, "WAITING_SECONDS", patience)
        workshop = Workshop(self.project, Path(self.temporary.name) / "work", Deadline(100))
        workshop.prepare(["SmallTest"], "Sum.cpp")
        mutant = next(m for m in mutants_of("Sum.cpp", source) if m.after == "if (!(count == 7)) {")
        self.assertEqual(workshop.try_mutant(mutant, ["SmallTest"]), "timed out")

    def test_a_failure_that_does_not_repeat_is_none(self):
        now_and_then = """const bool failedBefore = std::ifstream("failed").good();
  if (sum(4) != 10 && !failedBefore) {
    std::ofstream("failed") << 1;
    return 1;
  }
  return 0;"""
        (self.project / "Test.cpp").write_text(
            TEST.replace("return sum(4) == 10 ? 0 : 1;", now_and_then)
        )
        workshop = Workshop(self.project, Path(self.temporary.name) / "work", Deadline(100))
        workshop.prepare(["SmallTest"], "Sum.cpp")
        self.assertEqual(
            workshop.try_mutant(self.mutant("result -= number;"), ["SmallTest"]), "survived"
        )

    def test_time_counts_while_nothing_could_run(self):
        for command, runs in {
            "while :; do :; done": True,
            "while :; do sleep 9; done": False,
        }.items():
            process = subprocess.Popen(["bash", "-c", command], start_new_session=True)
            try:
                time.sleep(0.3)
                self.assertEqual(
                    any(workshops.can_run(process.pid) for _ in range(3)), runs, command
                )
            finally:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()

    def test_quick_tests_run_before_the_others(self):
        self.assertEqual(
            workshops.quickest_first({"slow": 8, "quick": 0.4, "quicker": 0.2}),
            ["quicker:quick", "-quicker:quick"],
        )
        self.assertEqual(workshops.quickest_first({"one": 1}), ["*"])

    def test_a_run_that_is_told_to_end_ends_what_it_started(self):
        deadline = Deadline(100)
        workshop = Workshop(self.project, Path(self.temporary.name) / "work", deadline)
        threading.Timer(1, deadline.end_now).start()
        started = time.monotonic()
        with self.assertRaises(TimeIsUp):
            workshop._succeeds(["sleep", "90"])
        self.assertLess(time.monotonic() - started, 60)

    def test_a_copy_follows_its_project_and_leaves_equal_files_alone(self):
        copy = Path(self.temporary.name) / "copy"
        copy_project(self.project, copy)
        kept = (copy / "Test.cpp").stat().st_mtime_ns
        (self.project / "Sum.cpp").unlink()
        (self.project / "CMakeLists.txt").write_text("# changed\n")
        copy_project(self.project, copy)
        self.assertEqual(contents(copy), contents(self.project))
        self.assertEqual((copy / "Test.cpp").stat().st_mtime_ns, kept)


if __name__ == "__main__":
    unittest.main()
