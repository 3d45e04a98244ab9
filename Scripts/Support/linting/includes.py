"""Every name of C++'s library comes by a header that the source asks for.

Which of its headers a library includes from others differs from one to the next: a source that
leans on that compiles on the machine of whoever wrote it and nowhere else. So the header stands in
the source itself, or in one of the project's own headers that it includes: those are the same
everywhere."""

import re

from .own_rules import without_comments
from .project import Finding

# Names by header, after `std::`. Where several headers declare a name, the one that is its home; a
# name that any of the usual headers declares (std::size_t, std::move's like) is not listed.
NAMES = {
    "algorithm": (
        "all_of any_of none_of binary_search clamp copy copy_if copy_n count count_if equal_range "
        "fill fill_n find_end find_first_of find_if find_if_not generate "
        "inplace_merge is_sorted lexicographical_compare lower_bound max_element merge min_element "
        "minmax mismatch nth_element partial_sort partition remove_if replace replace_if reverse "
        "rotate search set_difference set_intersection set_union shuffle sort stable_sort "
        "stable_partition swap_ranges transform unique upper_bound"
    ),
    "any": "any any_cast",
    "array": "array to_array",
    "atomic": "atomic atomic_bool atomic_flag atomic_int atomic_signal_fence memory_order_relaxed",
    "bit": "bit_cast bit_ceil bit_floor bit_width countl_zero countr_zero endian popcount rotl",
    "bitset": "bitset",
    "charconv": "from_chars to_chars from_chars_result chars_format",
    "cmath": "abs ceil cos exp fabs floor isfinite isinf isnan log log10 log2 pow round sin sqrt",
    "compare": "strong_ordering weak_ordering partial_ordering",
    "concepts": "same_as convertible_to derived_from integral invocable unsigned_integral",
    "condition_variable": "condition_variable",
    "csignal": "raise sig_atomic_t signal",
    "cstdint": (
        "int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t intptr_t uintptr_t "
        "intmax_t uintmax_t"
    ),
    "cstdio": "FILE fclose fflush fgets fopen fprintf fputs fread fwrite perror printf snprintf",
    "cstdlib": "abort atexit exit free getenv malloc quick_exit realloc strtol strtoul system",
    "cstring": "memchr memcmp memcpy memmove memset strchr strcmp strerror strlen strncmp strstr",
    "deque": "deque",
    "exception": (
        "current_exception exception exception_ptr rethrow_exception set_terminate "
        "terminate uncaught_exceptions"
    ),
    "expected": "expected unexpected",
    "filesystem": "filesystem",
    "format": "format format_to vformat",
    "fstream": "fstream ifstream ofstream",
    "functional": "function hash invoke move_only_function reference_wrapper",
    "iomanip": "put_time quoted setfill setprecision setw",
    "iostream": "cerr cin clog cout",
    "iterator": "back_inserter distance istreambuf_iterator next prev reverse_iterator",
    "limits": "numeric_limits",
    "list": "list",
    "locale": "locale",
    "map": "map multimap",
    "memory": (
        "allocator construct_at destroy_at enable_shared_from_this make_shared make_unique "
        "shared_ptr static_pointer_cast unique_ptr weak_ptr"
    ),
    "memory_resource": "pmr",
    "mutex": "call_once lock_guard mutex once_flag scoped_lock unique_lock",
    "new": "bad_alloc bad_array_new_length launder nothrow set_new_handler",
    "numbers": "numbers",
    "numeric": "accumulate gcd iota partial_sum reduce",
    "optional": "nullopt optional",
    "queue": "priority_queue queue",
    "random": (
        "bernoulli_distribution discrete_distribution minstd_rand mt19937 mt19937_64 "
        "normal_distribution random_device uniform_int_distribution uniform_real_distribution"
    ),
    "ranges": "views",
    "regex": "regex regex_match regex_replace regex_search smatch sregex_iterator",
    "set": "multiset set",
    "span": "as_bytes as_writable_bytes span",
    "sstream": "istringstream ostringstream stringstream",
    "stack": "stack",
    "stdexcept": "invalid_argument length_error logic_error out_of_range runtime_error",
    "stop_token": "stop_source stop_token",
    "string": "stod stoi stol stoul stoull string to_string u16string u32string u8string wstring",
    "string_view": "string_view u16string_view u32string_view u8string_view",
    "system_error": "errc error_code generic_category make_error_code system_category system_error",
    "thread": "jthread this_thread thread",
    "tuple": "apply ignore make_tuple tie tuple",
    "type_traits": (
        "conditional_t decay_t invoke_result_t is_base_of_v is_const_v is_convertible_v "
        "is_integral_v is_invocable_v is_pointer_v is_same_v is_void_v make_unsigned_t "
        "remove_cvref_t remove_reference_t underlying_type_t"
    ),
    "typeindex": "type_index",
    "unordered_map": "unordered_map unordered_multimap",
    "unordered_set": "unordered_set",
    "utility": "as_const cmp_less exchange in_place in_range index_sequence pair unreachable",
    "variant": "get_if holds_alternative monostate variant visit",
    "vector": "vector",
    "chrono": "chrono",
}
HOMES = {name: header for header, names in NAMES.items() for name in names.split()}
# What the declarations of another header name themselves, so that it has to bring it.
ALSO_BY = {
    "string_view": {"string"},
    "system_error": {"filesystem", "charconv"},
    "utility": {"map", "unordered_map"},
}

USE = re.compile(r"\bstd::([a-z_0-9]+)\b")
INCLUDE = re.compile(r'^[ \t]*#(?:include|import)[ \t]*[<"]([^>"]+)[>"]', re.MULTILINE)


class Includes:
    """What each source includes, by itself and through the project's own headers."""

    def __init__(self, project):
        self.project = project
        self.sources = {path: without_comments(project.read(path)) for path in project.cpp}
        self._reached = {}

    def own_header(self, path, included):
        """The path in the project of what `path` includes, or None where it is another's."""
        beside = f"{path.rpartition('/')[0]}/{included}".lstrip("/")
        return next((each for each in (beside, included) if each in self.sources), None)

    def of(self, path):
        """The headers of others that arrive by what the project itself wrote."""
        if path not in self._reached:
            self._reached[path] = set()
            for included in INCLUDE.findall(self.sources[path]):
                own = self.own_header(path, included)
                self._reached[path] |= self.of(own) if own else {included}
        return self._reached[path]

    def missing(self, path):
        """Header, line and name of the first use of each header that nobody asked for."""
        found = {}
        for use in USE.finditer(self.sources[path]):
            home = HOMES.get(use[1])
            if home and home not in found and not self.of(path) & {home, *ALSO_BY.get(home, ())}:
                found[home] = (self.sources[path].count("\n", 0, use.start()) + 1, use[1])
        return found


def with_includes(source, headers):
    """clang-format puts them where they belong."""
    lines = "".join(f"#include <{header}>\n" for header in headers)
    first = INCLUDE.search(source)
    guard = re.search(r"^#pragma once\n", source, re.MULTILINE)
    if first:
        end = [match.end() for match in INCLUDE.finditer(source)][-1] + 1
        return source[:end] + lines + source[end:]
    if guard:
        return source[: guard.end()] + "\n" + lines + source[guard.end() :]
    return lines + "\n" + source


def findings(project, fix=False):
    includes = Includes(project)
    for path in project.ending(".mm"):
        if "gmock/gmock.h" in includes.of(path):
            reason = (
                "GCC 14 cannot read <gmock/gmock.h> in Objective-C++, nor by a header of ours; "
                "<gmock/gmock-more-matchers.h> it can"
            )
            yield Finding(path, 1, reason, "gmock")
    for path in project.cpp:
        missing = includes.missing(path)
        if missing and fix:
            text = with_includes(project.read(path), sorted(missing))
            (project.root / path).write_text(text, encoding="utf-8")
            continue
        for header, (line, name) in sorted(missing.items(), key=lambda each: each[1]):
            reason = f"std::{name} is here by luck; include <{header}>"
            yield Finding(path, line, reason, "include")
