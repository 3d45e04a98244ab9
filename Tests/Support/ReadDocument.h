// What the tests ask of a document: its text, character by character, with the formatting that
// each character has.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace test_support {

// A small document around a body.
std::string documentWith(std::string_view body);

// The text, with "¶" for the end of a paragraph and "‹›" around a text of its own. Nothing if
// the document is refused.
std::optional<std::string> textOf(std::string_view rtf);

// The line that a document is refused with; empty if it is not.
std::string errorOf(std::string_view rtf);

std::vector<std::string> citationsIn(std::string_view rtf);

struct Character {
  std::string text;
  bool isBold = false;
  bool isItalic = false;
  std::size_t story = 0;  // a new number for each text of its own
  bool endsParagraph = false;

  bool operator==(const Character &) const = default;
};

void PrintTo(const Character &character, std::ostream *stream);

// Nothing if the document is refused.
std::optional<std::vector<Character>> charactersOf(std::string_view rtf);

}  // namespace test_support
