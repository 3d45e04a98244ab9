"""Puts together what stands in for Xcode on Linux: an SDK, and the tools that a build asks for.

The SDK has our declarations of the frameworks (SDK/), stubs of the libraries (symbols.txt), the
headers of Debian's libc++ in place of Apple's, and those of musl in place of the C library's.
"""

import platform
import re
import shutil
from pathlib import Path

import symbols

HERE = Path(__file__).resolve().parent
LLVM = Path("/usr/lib/llvm-19")
FRAMEWORKS = ("Foundation", "AppKit", "Cocoa", "CoreServices", "ApplicationServices")

# macOS's names of what musl calls stderr and so on.
STREAMS = "".join(
    f"""
extern FILE *__{name}p;
#undef {name}
#define {name} __{name}p
"""
    for name in ("stdin", "stdout", "stderr")
)

# And of where errno is.
ERRNO = """
#ifdef __cplusplus
extern "C"
#endif
int *__error(void);
#undef errno
#define errno (*__error())
"""


def with_macos_settings(config_site):
    """libc++'s settings as Apple builds it: what came with which macOS is marked. What depends on
    the C library's locales is left out, as musl's are not macOS's."""
    text = re.sub(
        r"#define (_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS)\b",
        r"/* #undef \1 */",
        config_site,
    )
    return re.sub(r"/\* #undef (_LIBCPP_HAS_NO_LOCALIZATION) \*/", r"#define \1", text)


def copy_headers(include):
    shutil.copytree(f"/usr/include/{platform.machine()}-linux-musl", include)
    # macOS's int64_t is another type than its long, and so for overloads and formats.
    types = include / "bits" / "alltypes.h"
    text, count = re.subn(r"(#define _Int64 long)$", r"\1 long", types.read_text(), flags=re.M)
    if count != 1:
        raise ValueError(f"{types} defines 64-bit integers in another way than it did")
    types.write_text(text)
    with (include / "stdio.h").open("a") as stdio:
        stdio.write(STREAMS)
    with (include / "errno.h").open("a") as errno:
        errno.write(ERRNO)
    libcxx = include / "c++" / "v1"
    shutil.copytree(LLVM / "include" / "c++" / "v1", libcxx)
    site = libcxx / "__config_site"
    site.write_text(with_macos_settings(site.read_text()))
    (include / "objc").symlink_to(HERE / "SDK" / "objc")


def write_stubs(sdk, libraries, oldest_system):
    for library in libraries:
        stub = symbols.stub(library, libraries, oldest_system)
        places = [sdk / library.file.lstrip("/").removesuffix(".dylib")]
        if library.is_framework:
            places.append(
                sdk / "System/Library/Frameworks" / f"{library.name}.framework" / library.name
            )
        else:
            places.append(sdk / "usr/lib" / f"lib{library.name}")
        for place in places:
            file = place.with_name(place.name + ".tbd")
            if not file.exists() or file.read_text() != stub:
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(stub)


def make_tools(tools):
    tools.mkdir()
    for name, program in {
        "ld64.lld": "ld64.lld",
        "lipo": "llvm-lipo",
        "libtool": "llvm-libtool-darwin",
    }.items():
        (tools / name).symlink_to(LLVM / "bin" / program)
    for name in ("ibtool", "codesign"):
        (tools / name).symlink_to(HERE / "Tools" / name)


def make_headers(sdk):
    copy_headers(sdk / "usr" / "include")
    for framework in FRAMEWORKS:
        place = sdk / "System" / "Library" / "Frameworks" / f"{framework}.framework"
        place.mkdir(parents=True)
        (place / "Headers").symlink_to(HERE / "SDK" / framework)


def origin():
    """What the headers and the tools are made from; they stay while it stays the same."""
    site = LLVM / "include" / "c++" / "v1" / "__config_site"
    return f"{HERE} {site.stat().st_mtime_ns} {Path(__file__).read_text()}"


def make(directory, oldest_system):
    """Brings DIRECTORY/sdk and DIRECTORY/tools up to date."""
    sdk, tools, made_from = directory / "sdk", directory / "tools", directory / "made-from"
    if not made_from.exists() or made_from.read_text() != origin():
        for old in (sdk, tools):
            shutil.rmtree(old, ignore_errors=True)
        make_headers(sdk)
        make_tools(tools)
        made_from.write_text(origin())
    write_stubs(sdk, symbols.read_list(symbols.LIST.read_text()), oldest_system)
