"""What a figure depends on beside the code: the machine, how busy it was, and what was
installed."""

import os
import pathlib
import platform
import re
import subprocess

# By the name for readers; those of Debian that every group depends on.
PACKAGES = {
    "GNUstep base": "libgnustep-base1.*",
    "GNUstep gui": "libgnustep-gui0.*",
    "systemd (sd-bus)": "libsystemd0",
    "JavaScriptCore": "libjavascriptcoregtk-4.1-0",
    "SQLite": "libsqlite3-0",
}


def field(path, pattern, otherwise="unknown"):
    try:
        found = re.search(pattern, pathlib.Path(path).read_text(encoding="utf-8"), re.MULTILINE)
    except OSError:
        return otherwise
    return found.group(1) if found else otherwise


def package_version(package):
    query = subprocess.run(
        ["dpkg-query", "-W", "-f", "${Version}", package],
        capture_output=True,
        text=True,
        check=False,
    )
    # Without epoch and Debian's revision.
    return re.sub(r"^\d+:|-[^-]*$", "", query.stdout) or "none"


def compiler_version():
    return subprocess.run(
        ["g++", "-dumpfullversion"], capture_output=True, text=True, check=True
    ).stdout.strip()


def describe():
    """Texts for the page. The load is the number of programs that wanted to run in the last
    minute."""
    processor = field("/proc/cpuinfo", r"^model name\s*:\s*(.*)$")
    memory = int(field("/proc/meminfo", r"^MemTotal:\s*(\d+)", "0")) / 2**20
    return {
        "machine": f"{os.cpu_count()} cores of {processor}, {memory:.0f} GiB",
        "load": round(os.getloadavg()[0], 1),
        "versions": {
            "system": field("/etc/os-release", r'^PRETTY_NAME="?([^"\n]*)'),
            "Linux": platform.release().partition("-")[0],
            "glibc": platform.libc_ver()[1],
            "GCC": compiler_version(),
            **{name: package_version(package) for name, package in PACKAGES.items()},
        },
    }
