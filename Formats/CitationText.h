// The syntax of one citation inside a citation group string.
//
//   flags \prepend text\ search text \append text\ #tag @pages
//
// Markers are searched for and cut off in a fixed order (pages, tag, flags, prepend,
// append); they are not parsed from left to right and have no escape. Malformed markers
// are no errors: they stay in the search text. Each rule is spelt out in the source.
#pragma once

#include <optional>
#include <string_view>

namespace formats {

// All texts are views into the parsed string (UTF-16 code units).
struct CitationText {
  std::optional<std::u16string_view> pageRange = std::nullopt;    // "@", not trimmed, never empty
  std::optional<std::u16string_view> tag = std::nullopt;          // "#", trimmed, may be empty
  std::optional<std::u16string_view> prependText = std::nullopt;  // not trimmed
  std::optional<std::u16string_view> appendText = std::nullopt;   // not trimmed
  // What is left, trimmed. Empty: there is no citation here.
  std::u16string_view searchText = {};
  bool excludeFromBody = false;          // "!"
  bool excludeFromBibliography = false;  // "^"
  bool useYearOnly = false;              // "%"
  bool suppressSuperscript = false;      // "_"
  bool stripEnclosure = false;           // "*"

  bool operator==(const CitationText &) const = default;
};

CitationText parseCitationText(std::u16string_view text);

// The white space trimmed here: tab and the Unicode space separators (category Zs), but no
// line or paragraph breaks.
bool isWhitespace(char16_t unit);
std::u16string_view trimmed(std::u16string_view text);

}  // namespace formats
