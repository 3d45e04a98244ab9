// Text that may be shown at a terminal.
//
// The name of a file, a citation, a word of the host's may hold characters that command a terminal,
// end a line in the middle or turn the direction of what stands behind them. So what prints takes
// no std::string: only words that stand in the source, numbers, and what went through inOneLine or
// inJSON is a TerminalText.
#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace terminal {

// Words of the program's own. Nothing but a literal compiles.
class Words {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): a literal is meant to be enough
  consteval Words(const char *literal) : text_(literal) {}
  constexpr std::string_view text() const { return text_; }

 private:
  std::string_view text_;
};

// UTF-8; lines end with "\n".
class TerminalText {
 public:
  TerminalText() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): what a Words is, is harmless
  TerminalText(Words words) : text_(words.text()) {}

  // What others wrote, as a part of one line: control characters and those that end a line or turn
  // its direction become blanks, and ill-formed bytes U+FFFD.
  static TerminalText inOneLine(std::string_view text);
  // The same as a string of JSON, in quotation marks. Nothing is lost: what may not be shown is
  // escaped.
  static TerminalText inJSON(std::string_view text);
  static TerminalText number(std::integral auto value) { return of(std::to_string(value)); }
  static TerminalText blanks(std::size_t count) { return of(std::string(count, ' ')); }

  const std::string &text() const { return text_; }

  TerminalText &operator+=(const TerminalText &other) {
    text_ += other.text_;
    return *this;
  }
  friend TerminalText operator+(TerminalText left, const TerminalText &right) {
    left += right;
    return left;
  }
  friend TerminalText operator+(TerminalText left, Words right) {
    left.text_ += right.text();
    return left;
  }
  friend TerminalText operator+(Words left, const TerminalText &right) {
    return TerminalText(left) + right;
  }

 private:
  static TerminalText of(std::string shown) {
    TerminalText text;
    text.text_ = std::move(shown);
    return text;
  }

  std::string text_;
};

}  // namespace terminal
