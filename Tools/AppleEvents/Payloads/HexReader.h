// Reads bytes that somebody wrote down in hexadecimal.
#pragma once

#include <expected>
#include <string>
#include <string_view>

namespace appleevents {

// Takes digits with or without blanks between the bytes, with 0x and commas, in < > or { }; what
// `hexdump -C`, `xxd` and `od -A x -t x1` print, with their offsets, which must be right, with
// their column of characters, and with "*" for lines that repeat; and remarks two blanks behind the
// bytes of a line, as Documentation/WireFormats.md has them. The error is one line that names the
// line.
std::expected<std::string, std::string> readHex(std::string_view text);

}  // namespace appleevents
