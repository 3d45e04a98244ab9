"""What a bundle for macOS has to look like, and the stand-in for its signature."""

import hashlib
import json
import plistlib
import subprocess

SEAL = "Contents/_CodeSignature/CodeResources"
LANGUAGES = ("de", "en", "es", "fr", "he", "it", "ja", "nl", "pt", "ru", "zh-Hans")
PLUGIN_RESOURCES = {
    "Contents/Resources/MellelScanDialog.nib",
    *(
        f"Contents/Resources/{language}.lproj/{table}.strings"
        for language in LANGUAGES
        for table in ("Plugin", "ScanDialog")
    ),
}


def files(bundle):
    return {str(path.relative_to(bundle)) for path in bundle.rglob("*") if path.is_file()}


def contents(bundle):
    return {
        name: hashlib.sha256((bundle / name).read_bytes()).hexdigest()
        for name in sorted(files(bundle) - {SEAL})
    }


def seal(bundle, identity):
    place = bundle / SEAL
    place.parent.mkdir(exist_ok=True)
    place.write_text(json.dumps({"identity": identity, "contents": contents(bundle)}))


def processors(executable):
    names = subprocess.run(
        ["/usr/lib/llvm-19/bin/llvm-lipo", "-archs", executable],
        check=True,
        text=True,
        capture_output=True,
    ).stdout
    return set(names.split())


def faults(bundle, kind, resources, oldest_system):
    """What is wrong with a bundle of that kind (the CFBundlePackageType), a line each."""
    present = files(bundle)
    if "Contents/Info.plist" not in present:
        return ["no Contents/Info.plist"]
    information = plistlib.loads((bundle / "Contents/Info.plist").read_bytes())
    executable = f"Contents/MacOS/{information.get('CFBundleExecutable')}"
    wanted = resources | {"Contents/Info.plist", executable, SEAL}
    # CMake writes the latter for applications; macOS ignores it by now.
    found = [f"missing: {name}" for name in sorted(wanted - present)]
    found += [f"not wanted: {name}" for name in sorted(present - wanted - {"Contents/PkgInfo"})]
    if information.get("CFBundlePackageType") != kind:
        found.append(
            f"CFBundlePackageType is {information.get('CFBundlePackageType')} and not {kind}"
        )
    if executable in present:
        found += faults_of_executable(bundle / executable, oldest_system)
    if SEAL in present and json.loads((bundle / SEAL).read_text())["contents"] != contents(bundle):
        found.append("changed since it was signed")
    return found


def faults_of_executable(executable, oldest_system):
    found = []
    if processors(executable) != {"arm64", "x86_64"}:
        found.append(f"built for {' '.join(sorted(processors(executable)))} alone")
    commands = subprocess.run(
        ["/usr/lib/llvm-19/bin/llvm-otool", "-l", "-arch", "all", executable],
        check=True,
        text=True,
        capture_output=True,
    ).stdout
    oldest = {line.split()[1] for line in commands.splitlines() if line.split()[:1] == ["minos"]}
    if oldest != {oldest_system}:
        found.append(f"runs on macOS {', '.join(sorted(oldest))} and not on {oldest_system}")
    return found
