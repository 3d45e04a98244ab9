"""MacOSTest.py DIRECTORY [TEST…]: looks at what build-all built in DIRECTORY, and puts in mistakes
to see them noticed."""

import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
import bundles
import crossbuild
import plists
import symbols

SOURCES = crossbuild.PROJECT / "Plugin" / "KorvoMellelPlugin"
OLDEST = crossbuild.oldest_system()
BUILT = crossbuild.CrossBuild(sys.argv.pop(1))


def faults_of_plugin(bundle):
    return bundles.faults(bundle, "BNDL", bundles.PLUGIN_RESOURCES, OLDEST)


class Temporary(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = Path(directory.name)


class MacOSLayout(Temporary):
    def copy_of_plugin(self):
        copy = self.directory / "KorvoMellelPlugin.bundle"
        shutil.copytree(BUILT.plugin, copy)
        return copy

    def test_the_plug_in_is_a_signed_bundle_for_both_processors(self):
        self.assertEqual(faults_of_plugin(BUILT.plugin), [])

    def test_the_smallest_host_is_a_signed_application(self):
        self.assertEqual(bundles.faults(BUILT.host, "APPL", set(), OLDEST), [])

    def test_what_is_installed_is_the_whole_bundle(self):
        BUILT.install(self.directory)
        self.assertEqual(
            [path.name for path in self.directory.iterdir()], ["KorvoMellelPlugin.bundle"]
        )
        self.assertEqual(faults_of_plugin(self.directory / "KorvoMellelPlugin.bundle"), [])

    def test_the_plug_in_tells_the_projects_version(self):
        project = (crossbuild.PROJECT / "CMakeLists.txt").read_text()
        [version] = re.findall(r"^project\(.* VERSION ([0-9.]+)", project, re.MULTILINE)
        information = plistlib.loads((BUILT.plugin / "Contents/Info.plist").read_bytes())
        for key in ("CFBundleShortVersionString", "CFBundleVersion"):
            self.assertEqual(information[key], version)

    def test_a_missing_resource_is_noticed(self):
        for resource in bundles.PLUGIN_RESOURCES:
            copy = self.copy_of_plugin()
            (copy / resource).unlink()
            bundles.seal(copy, "-")
            self.assertEqual(faults_of_plugin(copy), [f"missing: {resource}"])
            shutil.rmtree(copy)

    def test_a_resource_that_changed_after_the_signature_is_noticed(self):
        copy = self.copy_of_plugin()
        with (copy / "Contents/Resources/en.lproj/Plugin.strings").open("a") as table:
            table.write("\n")
        self.assertEqual(faults_of_plugin(copy), ["changed since it was signed"])

    def test_what_does_not_belong_into_the_bundle_is_noticed(self):
        copy = self.copy_of_plugin()
        (copy / "Contents/Resources/Info-gnustep.plist").write_text("{}")
        bundles.seal(copy, "-")
        self.assertEqual(
            faults_of_plugin(copy), ["not wanted: Contents/Resources/Info-gnustep.plist"]
        )

    def test_a_processor_that_is_left_out_is_noticed(self):
        copy = self.copy_of_plugin()
        executable = copy / "Contents/MacOS/KorvoMellelPlugin"
        subprocess.run(
            ["/usr/lib/llvm-19/bin/llvm-lipo", "-thin", "arm64", executable, "-output", executable],
            check=True,
        )
        bundles.seal(copy, "-")
        self.assertEqual(faults_of_plugin(copy), ["built for arm64 alone"])

    def test_nothing_of_linux_was_looked_for(self):
        cache = (BUILT.build / "CMakeCache.txt").read_text().lower()
        self.assertIn("codesign", cache)
        for name in ("gnustep", "systemd", "javascriptcore", "sqlite", "pkg_config"):
            self.assertNotIn(name, cache)


class MacOSSources(Temporary):
    """Each adds one source to the plug-in, compiled and linked as its own are."""

    def build(self, text):
        source = self.directory / "Added.mm"
        source.write_text(text)
        compiled = self.directory / "Added.o"
        BUILT.compile(source, compiled)
        BUILT.link(compiled, self.directory / "linked")

    def assert_refused(self, text, why):
        with self.assertRaises(crossbuild.Refused) as refusal:
            self.build(text)
        self.assertIn(why, str(refusal.exception))

    def test_a_blameless_source_is_taken(self):
        self.build("#import <Cocoa/Cocoa.h>\nvoid added() { NSBeep(); }\n")
        self.assertEqual(bundles.processors(self.directory / "linked"), {"arm64", "x86_64"})

    def test_a_call_that_only_linux_has_is_noticed(self):
        self.assert_refused(
            '#include <sys/mman.h>\nint added() { return memfd_create("added", 0); }\n',
            "memfd_create: not listed",
        )

    def test_a_class_newer_than_the_oldest_system_is_noticed(self):
        self.assert_refused(
            "#import <Cocoa/Cocoa.h>\n@interface NSTextInsertionIndicator : NSView\n@end\n"
            "id added() { return [NSTextInsertionIndicator class]; }\n",
            "in AppKit since macOS 14.0 only",
        )

    def test_a_method_newer_than_the_oldest_system_is_noticed(self):
        self.assert_refused(
            "#import <Cocoa/Cocoa.h>\nvoid added() { [NSApp activate]; }\n",
            "'activate' is only available on macOS 14.0 or newer",
        )

    def test_a_function_of_cxx_newer_than_the_oldest_system_is_noticed(self):
        self.assert_refused(
            "#include <charconv>\nchar *added(char *from, char *to) {\n"
            "  return std::to_chars(from, to, 0.5).ptr;\n}\n",
            "'to_chars' is unavailable: introduced in macOS 13.",
        )

    def test_a_deprecated_call_is_noticed(self):
        self.assert_refused(
            "#import <Cocoa/Cocoa.h>\n#import <ApplicationServices/ApplicationServices.h>\n"
            "OSErr added(ProcessSerialNumber *next) { return GetNextProcess(next); }\n",
            "'GetNextProcess' is deprecated",
        )

    def test_nil_where_macos_takes_none_is_noticed(self):
        self.assert_refused(
            "#import <Cocoa/Cocoa.h>\nid added() { return [NSArray arrayWithObject:nil]; }\n",
            "null passed to a callee that requires a non-null argument",
        )


class MacOSPropertyLists(unittest.TestCase):
    def setUp(self):
        self.gnustep = (SOURCES / "Info-gnustep.plist").read_text()
        self.macos = (SOURCES / "Info.plist").read_bytes()

    def test_the_two_of_the_plug_in_agree(self):
        self.assertEqual(plists.disagreements(self.gnustep, self.macos), [])

    def test_one_that_says_something_else_is_noticed(self):
        other = self.gnustep.replace('"${PROJECT_VERSION}"', '"3.0"')
        self.assertEqual(
            plists.disagreements(other, self.macos),
            [
                "CFBundleShortVersionString is 3.0, "
                "and CFBundleShortVersionString is ${PROJECT_VERSION}"
            ],
        )
        self.assertEqual(
            plists.disagreements(self.gnustep, self.macos.replace(b"KorvoMellelAgent", b"Agent")),
            ["NSPrincipalClass is KorvoMellelAgent, and NSPrincipalClass is Agent"],
        )
        self.assertEqual(
            plists.disagreements(self.gnustep.replace("\n}", '\n  NSIcon = "a";\n}'), self.macos),
            ["only GNUstep's has NSIcon"],
        )


class MacOSSymbols(unittest.TestCase):
    LIST = """
library A /usr/lib/A.dylib
10.5 - _steady
13.3 - _new
10.0 12.6 _gone
10.0 - _intel x86_64
"""

    def test_a_library_offers_what_every_supported_system_has(self):
        libraries = symbols.read_list(self.LIST)
        stub = symbols.stub(libraries[0], libraries, "13.0")
        self.assertEqual(stub.count("'_steady'"), 2)
        self.assertEqual(stub.count("'_intel'"), 1)
        self.assertNotIn("_new", stub)
        self.assertNotIn("_gone", stub)
        self.assertIn("_new", symbols.stub(libraries[0], libraries, "13.3"))

    def test_why_a_symbol_is_missing_is_told(self):
        says = "".join(
            f"ld64.lld: error: undefined symbol for arch arm64: {name}\n>>> referenced by\n"
            for name in ("new", "_gone", "unknown")
        )
        self.assertEqual(
            symbols.explain(says, symbols.read_list(self.LIST), "13.0"),
            [
                "_gone: in A until macOS 12.6 only",
                "new: in A since macOS 13.3 only, and 13.0 has to do",
                "unknown: not listed in symbols.txt as a symbol of macOS",
            ],
        )

    def test_a_line_that_says_nothing_is_refused(self):
        with self.assertRaises(symbols.BadList):
            symbols.read_list("library A /usr/lib/A.dylib\n_steady 10.5\n")


if __name__ == "__main__":
    unittest.main()
