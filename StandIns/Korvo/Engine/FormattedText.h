// Text as a citation style prints it: runs of UTF-16 text, each with the look it has.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace korvo::engine {

enum class VerticalPosition { normal, superscript, subscript };

// The text never holds a control character, except the line feed: a line break within
// the paragraph.
struct Run {
  std::u16string text;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool smallCaps = false;
  VerticalPosition verticalPosition = VerticalPosition::normal;

  auto operator<=>(const Run &) const = default;
};

// Neighbouring runs differ in their look, and no run is empty.
struct FormattedText {
  std::vector<Run> runs;

  bool isEmpty() const { return runs.empty(); }
  std::u16string plainText() const;

  auto operator<=>(const FormattedText &) const = default;
};

struct BibliographyEntry {
  std::string itemId;
  // The number or label in front of the entry, where the style sets it apart (see
  // SecondFieldAlign); without blanks around it.
  std::optional<FormattedText> firstField;
  FormattedText text;

  bool operator==(const BibliographyEntry &) const = default;
};

// How the text of an entry stands to its first field: not set apart; in a column of its
// own, first field at the margin; or the same with the first field hanging outside it.
enum class SecondFieldAlign { none, flush, margin };

struct Bibliography {
  std::vector<BibliographyEntry> entries;
  bool hangingIndent = false;
  SecondFieldAlign secondFieldAlign = SecondFieldAlign::none;
  // The widest first field, in characters: what the column beside it needs.
  std::size_t firstFieldCharacters = 0;
  // Space between entries and between lines, in lines: 0 and 1 are plain single spacing.
  int entrySpacing = 0;
  int lineSpacing = 1;

  bool operator==(const Bibliography &) const = default;
};

struct FormattedDocument {
  // Each different text once.
  std::vector<FormattedText> texts;
  // For each group handed in, which of the texts is its.
  std::vector<std::uint32_t> groups;
  Bibliography bibliography;

  const FormattedText &group(std::size_t index) const { return texts.at(groups.at(index)); }

  bool operator==(const FormattedDocument &) const = default;
};

}  // namespace korvo::engine
