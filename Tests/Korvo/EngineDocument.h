// A small library and short ways to format documents with it, for the engine's tests.
#pragma once

#include <StandIns/Korvo/Engine/CitationProcessor.h>
#include <StandIns/Korvo/Engine/StyleCatalog.h>

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace korvo_test {

using korvo::engine::Cite;
using korvo::engine::CiteGroup;

using Items = std::map<std::string, std::string, std::less<>>;

// smith2001 (article), jones1999 (book of two), gogh1888 (book, particle), smith2001b
// (same author and year), curie1903 (thesis).
const Items &library();

korvo::engine::CitationProcessor::ItemLookup lookUpIn(const Items &items);

Cite cite(std::string_view id, std::u16string_view pages = {});

// A text with its looks written as <i>, <b>, <u>, <sc>, <sup> and <sub>, in UTF-8.
std::string markup(const korvo::engine::FormattedText &text);

// The processor of the tests: one machine for all of them, as in the program.
korvo::engine::CitationProcessor &processor();
korvo::engine::Style style(std::string_view name);

// What the processor makes of a document in a style of that text. A failure is recorded with the
// test, and gives an empty document.
korvo::engine::FormattedDocument formatIn(std::string_view styleText,
                                          korvo::engine::CitationProcessor &processor,
                                          const Items &items, const std::vector<CiteGroup> &groups);

// All texts, with their looks (see markup): of the groups, then of the entries, after their ids.
std::vector<std::string> allTexts(const korvo::engine::FormattedDocument &document);

struct Printed {
  std::vector<std::string> groups;
  std::vector<std::string> entries;  // the first field, if any, with a tab after it
  korvo::engine::Bibliography bibliography;
};
// A failure is recorded with the test, and gives an empty document.
Printed print(std::string_view styleName, const std::vector<CiteGroup> &groups,
              const Items &items = library());
// The only group's text.
std::string printOne(std::string_view styleName, const CiteGroup &group,
                     const Items &items = library());

}  // namespace korvo_test
