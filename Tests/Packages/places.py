"""Where a test puts what would be installed, and the demo run from there."""

import os
import subprocess
import tempfile
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
SCRIPTS = PROJECT / "Scripts"


def temporary(test):
    directory = tempfile.TemporaryDirectory(prefix="packages of tests.")
    test.addCleanup(directory.cleanup)
    return Path(directory.name)


def run(*command, **options):
    """What a command says on standard output. Fails when the command does, with all it said."""
    finished = subprocess.run(
        command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options
    )
    if finished.returncode != 0:
        raise AssertionError(f"{command} ended with {finished.returncode}:\n{finished.stdout}")
    return finished.stdout


def install(build, prefix, *options):
    run("cmake", "--install", build, "--prefix", prefix, *options)


def files_of(place):
    """The paths of all that is no folder, and of links."""
    found = (path for path in place.rglob("*") if path.is_symlink() or not path.is_dir())
    return {str(path.relative_to(place)) for path in found}


def programs_of(place):
    """What the system's loader reads: programs, the library, the module in the bundle."""
    paths = (path for path in place.rglob("*") if path.is_file() and not path.is_symlink())
    return sorted(path for path in paths if path.read_bytes()[:4] == b"\x7fELF")


def demo(prefix, output):
    """What the demo says, with the programs and the examples below the prefix. The user speaks
    German: the plug-in has English texts in itself, and others in its resources."""
    environment = {name: os.environ[name] for name in ("HOME", "PATH") if name in os.environ}
    return run(
        SCRIPTS / "with-desktop",
        "--private",
        SCRIPTS / "Support" / "scan-drafts",
        prefix / "bin",
        prefix / "share/doc/korvo-mellel/examples",
        output,
        "apa",
        env={**environment, "LC_ALL": "C.UTF-8", "LANGUAGE": "de"},
    )


def look_at_demo(test, prefix, output):
    """Runs the demo from the prefix and looks at what became of it."""
    said = demo(prefix, output)
    for line in ("formatted: 41 of 43 citations", "formatted: 43 of 45 citations"):
        test.assertIn(line, said)
    test.assertEqual(said.count("bibliography: 43 entries"), 2)
    # The host found the plug-in, and the plug-in its texts.
    test.assertIn("Zitat 13 Borda 1790: Keine Treffer gefunden.", said)
    copies = sorted(path.name for path in output.glob("*.rtf"))
    test.assertEqual(copies, ["draft-libreoffice-apa.rtf", "draft-textedit-apa.rtf"])


def foreign_paths(programs, folders):
    """What leads from the programs to one of the folders, or to any other place of one machine."""
    found = []
    for program in programs:
        read = run("readelf", "--wide", "--dynamic", program)
        for line in read.splitlines():
            if ("RUNPATH" in line or "RPATH" in line) and "[$ORIGIN/../lib]" not in line:
                found.append(f"{program.name}: {line.strip()}")
        contents = program.read_bytes()
        found += [f"{program.name}: {each}" for each in folders if bytes(each) in contents]
    return found
