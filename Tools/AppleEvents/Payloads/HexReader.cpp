#include "HexReader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace appleevents {

namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::string_view digits = "0123456789abcdefABCDEF";
constexpr auto none = std::string_view::npos;

bool isHex(std::string_view text) {
  return !text.empty() && text.find_first_not_of(digits) == none;
}

std::optional<std::uint64_t> numberOf(std::string_view text) {
  std::uint64_t number = 0;
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
  return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::string_view withoutPrefix(std::string_view text) {
  return text.starts_with("0x") || text.starts_with("0X") ? text.substr(2) : text;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(blanks);
  return start == none ? std::string_view()
                       : text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

// Cuts off the first word.
std::string_view takeWord(std::string_view &text) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(blanks));
  text.remove_prefix(word.size());
  return word;
}

class HexReader {
 public:
  std::expected<std::string, std::string> read(std::string_view text) {
    while (!text.empty()) {
      const std::string_view line = text.substr(0, text.find('\n'));
      text.remove_prefix(std::min(line.size() + 1, text.size()));
      ++lineNumber_;
      if (!readLine(trimmed(line))) {
        return std::unexpected("line " + std::to_string(lineNumber_) + ": " + error_);
      }
    }
    if (repeats_) {
      return std::unexpected("line " + std::to_string(lineNumber_) +
                             ": no offset says how often the lines repeat");
    }
    return std::move(bytes_);
  }

 private:
  // Of each size, so that none claims memory by a number alone.
  static constexpr std::uint64_t largestSize = std::uint64_t{256} * 1024 * 1024;

  bool fail(std::string why) {
    error_ = std::move(why);
    return false;
  }

  bool failAt(std::string_view word, std::string_view why) {
    std::string text = "\"";
    text.append(word).append("\" ").append(why);
    return fail(std::move(text));
  }

  bool readLine(std::string_view line) {
    if (line.empty()) {
      return true;
    }
    if (line == "*") {
      repeats_ = !lastLine_.empty();
      return repeats_ || fail("\"*\" repeats no line");
    }
    std::string_view rest = line;
    const std::string_view first = takeWord(rest);
    if (first.ends_with(':')) {
      const std::string_view offset = withoutPrefix(first.substr(0, first.size() - 1));
      if (!isHex(offset)) {
        return failAt(first, "is no offset");
      }
      const std::string_view bytes = trimmed(rest);
      return checkOffset(offset) && readWords(bytes.substr(0, endOfBytes(bytes)));
    }
    if (isOffset(first, rest)) {
      return checkOffset(first) && readWords(rest.substr(0, rest.find_first_of("|>")));
    }
    if (repeats_) {
      return fail("no offset says how often the lines repeat");
    }
    return readWords(line.substr(0, endOfRemarked(line)));
  }

  // A number in front of bytes of two digits each; or, at the end, alone.
  bool isOffset(std::string_view first, std::string_view rest) const {
    constexpr std::size_t fewestDigits = 6;
    constexpr std::size_t mostDigits = 8;
    if (first.size() < fewestDigits || first.size() > mostDigits || !isHex(first)) {
      return false;
    }
    const std::string_view next = takeWord(rest);
    return next.empty() ? hasOffsets_ : next.size() == 2 && isHex(next);
  }

  bool checkOffset(std::string_view digitsOfOffset) {
    const std::optional<std::uint64_t> offset = numberOf(digitsOfOffset);
    hasOffsets_ = true;
    if (std::exchange(repeats_, false) && offset && *offset <= largestSize) {
      while (bytes_.size() + lastLine_.size() <= *offset) {
        bytes_ += lastLine_;
      }
    }
    if (offset != bytes_.size()) {
      return fail("the offset is " + std::string(digitsOfOffset) + ", but " +
                  std::to_string(bytes_.size()) + " bytes stand before it");
    }
    return true;
  }

  // Behind a gap stand the characters of the bytes.
  static std::size_t endOfBytes(std::string_view bytes) { return bytes.find("  "); }

  // Behind a gap stands a remark, unless there is nothing but digits.
  static std::size_t endOfRemarked(std::string_view line) {
    const std::size_t gap = line.find("  ");
    if (gap == none) {
      return none;
    }
    std::string_view behind = line.substr(gap);
    while (!behind.empty()) {
      const std::string_view word = takeWord(behind);
      if (!word.empty() && (!isHex(word) || word.size() % 2 != 0)) {
        return gap;
      }
    }
    return none;
  }

  bool readWords(std::string_view words) {
    const std::size_t start = bytes_.size();
    while (!(words = trimmed(words)).empty()) {
      const std::size_t size = std::min(words.find_first_of(" \t,"), words.size());
      std::string_view word = words.substr(0, size);
      words.remove_prefix(std::min(size + 1, words.size()));
      while (!word.empty() && (word.front() == '<' || word.front() == '{')) {
        word.remove_prefix(1);
      }
      while (!word.empty() && (word.back() == '>' || word.back() == '}')) {
        word.remove_suffix(1);
      }
      if (!word.empty() && !readBytes(withoutPrefix(word))) {
        return false;
      }
    }
    lastLine_ = bytes_.substr(start);
    return true;
  }

  bool readBytes(std::string_view word) {
    if (word.find("...") != none || word.find("…") != none) {
      return fail("bytes were left out at \"" + std::string(word) + '"');
    }
    const std::size_t wrong = word.find_first_not_of(digits);
    if (wrong != none || word.empty()) {
      return failAt(word, "is not hexadecimal");
    }
    if (hasOffsets_ && word.size() == 1) {
      return failAt(word, "is half a byte");
    }
    if (word.size() % 2 != 0) {
      return failAt(word, "has an odd number of digits");
    }
    for (std::size_t index = 0; index < word.size(); index += 2) {
      bytes_ += static_cast<char>(*numberOf(word.substr(index, 2)));
    }
    return true;
  }

  std::string bytes_;
  std::string lastLine_;  // its bytes
  std::size_t lineNumber_ = 0;
  bool hasOffsets_ = false;
  bool repeats_ = false;
  std::string error_;
};

// hexdump without -C, and od -x, print words in the order of the machine: offsets of seven digits,
// and words of four.
bool looksLikeWords(std::string_view text) {
  constexpr std::size_t offsetDigits = 7;
  constexpr std::size_t wordDigits = 4;
  std::string_view line = text.substr(0, text.find('\n'));
  const std::string_view offset = takeWord(line);
  return offset.size() == offsetDigits && isHex(offset) && takeWord(line).size() == wordDigits;
}

}  // namespace

std::expected<std::string, std::string> readHex(std::string_view text) {
  if (looksLikeWords(trimmed(text))) {
    return std::unexpected(
        "line 1: these look like words, whose bytes are swapped: hexdump -C or xxd prints bytes");
  }
  auto bytes = HexReader().read(text);
  if (bytes && bytes->empty()) {
    return std::unexpected("there are no bytes in it");
  }
  return bytes;
}

}  // namespace appleevents
