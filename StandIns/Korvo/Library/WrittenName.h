// A citation as people write it out in full: "J.R.R. Tolkien, 1954", "King, Martin Luther, Jr.
// 1963", "Smith (2009)", "Nodate n.d.". CitationName has the short forms, which an index finds;
// here the longer ones are taken apart and compared with a reference that may be meant.
#pragma once

#include "BibliographicRecord.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvo::library {

// All texts are folded (see FoldedText.h).
struct WrittenName {
  // What commas and "and" set apart: whole names, or parts of names written the other way round.
  std::vector<std::vector<std::string>> pieces;  // each of one word or more
  bool hasEtAl = false;
  std::string year;  // empty for "n.d."
  // Everything before the year as it was written: perhaps a title.
  std::string textBeforeYear;
};

// Nothing for a text that ends with neither a year nor "n.d.", or names too many people to be one
// that somebody wrote.
std::optional<WrittenName> readWrittenName(std::string_view visibleText);

// The family names that the first person may have, the shortest first: "tolkien", "ronald tolkien".
std::vector<std::string> possibleFamilyNames(const WrittenName &name);

// Whether the people and the year are those of the reference. Given names may be shortened to
// initials on either side, and some of them left out, but none may be another one.
bool mayMean(const WrittenName &name, const BibliographicRecord &record);

}  // namespace korvo::library
