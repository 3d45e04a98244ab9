"""The plug-in's two property lists, which say the same thing in two spellings."""

import plistlib
import re

# GNUstep's key, and macOS's.
KEYS = {
    "CFBundleIdentifier": "CFBundleIdentifier",
    "CFBundleName": "CFBundleName",
    "CFBundleShortVersionString": "CFBundleShortVersionString",
    "NSExecutable": "CFBundleExecutable",
    "NSPrincipalClass": "NSPrincipalClass",
}


def disagreements(gnustep, macos):
    """What they differ in, a line each: GNUstep's list as text, macOS's as bytes."""
    ours = dict(re.findall(r'^\s*(\w+) = "(.*)";$', gnustep, flags=re.MULTILINE))
    theirs = plistlib.loads(macos)
    found = [f"only GNUstep's has {key}" for key in sorted(set(ours) - set(KEYS))]
    for key, other in KEYS.items():
        if ours.get(key) is None or ours[key] != theirs.get(other):
            found.append(f"{key} is {ours.get(key)}, and {other} is {theirs.get(other)}")
    return found
