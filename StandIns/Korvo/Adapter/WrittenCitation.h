// A citation as its author wrote it, put together again from its parts.
#pragma once

#include <string>
#include <string_view>

namespace korvo::adapter {

// What the text of one citation asks for. Texts are UTF-16, not trimmed.
struct CitationParts {
  std::u16string searchString = {};
  std::u16string pageRange = {};
  std::u16string prependString = {};
  std::u16string appendString = {};
  bool includeInBody = true;
  bool includeInBibliography = true;
  bool useYearOnly = false;
  bool suppressSuperscript = false;
  bool stripEnclosure = false;

  bool operator==(const CitationParts &) const = default;
};

// With every marker, in the order in which they are read; `tag` may be empty. Reading the
// text gives the same parts again, for all parts that were read from a text.
std::u16string writtenCitation(const CitationParts &parts, std::u16string_view tag);

}  // namespace korvo::adapter
