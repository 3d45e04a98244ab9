#include "EngineDocument.h"

#include <Formats/Unicode.h>

#include <gtest/gtest.h>

#include <utility>

namespace korvo_test {

const Items &library() {
  static const Items items = {
      {"smith2001", R"({"type":"article-journal","title":"The shape of rivers",
        "author":[{"family":"Smith","given":"John"}],"issued":{"date-parts":[[2001]]},
        "container-title":"Journal of Hydrology","volume":"12","issue":"3","page":"45-67"})"},
      {"jones1999", R"({"type":"book","title":"Deep water",
        "author":[{"family":"Jones","given":"Ann"},{"family":"Lee","given":"Bo"}],
        "issued":{"date-parts":[[1999]]},"publisher":"Harbour Press","publisher-place":"London"})"},
      {"gogh1888", R"({"type":"book","title":"On colour",
        "author":[{"family":"Gogh","given":"Vincent","non-dropping-particle":"van"}],
        "issued":{"date-parts":[[1888]]},"publisher":"Arles","publisher-place":"Arles"})"},
      {"smith2001b", R"({"type":"article-journal","title":"Zones of silt",
        "author":[{"family":"Smith","given":"John"}],"issued":{"date-parts":[[2001]]},
        "container-title":"Journal of Hydrology","volume":"13","page":"1-9"})"},
      {"curie1903", R"({"type":"thesis","title":"Recherches sur les substances radioactives",
        "author":[{"family":"Curie","given":"Marie"}],"issued":{"date-parts":[[1903]]},
        "genre":"PhD thesis","publisher":"Faculté des sciences de Paris"})"},
  };
  return items;
}

korvo::engine::CitationProcessor::ItemLookup lookUpIn(const Items &items) {
  return [&items](std::string_view id) -> std::optional<std::string> {
    const auto found = items.find(id);
    return found == items.end() ? std::nullopt : std::optional(found->second);
  };
}

Cite cite(std::string_view id, std::u16string_view pages) {
  Cite result;
  result.itemId = id;
  result.pageRange = pages;
  return result;
}

std::string markup(const korvo::engine::FormattedText &text) {
  std::string result;
  for (const korvo::engine::Run &run : text.runs) {
    std::string piece = formats::encodeUTF8(run.text);
    const auto wrap = [&](bool wanted, const std::string &tag) {
      if (wanted) {
        piece = "<" + tag + ">" + piece + "</" + tag + ">";
      }
    };
    wrap(run.bold, "b");
    wrap(run.italic, "i");
    wrap(run.underline, "u");
    wrap(run.smallCaps, "sc");
    wrap(run.verticalPosition == korvo::engine::VerticalPosition::superscript, "sup");
    wrap(run.verticalPosition == korvo::engine::VerticalPosition::subscript, "sub");
    result += piece;
  }
  return result;
}

korvo::engine::CitationProcessor &processor() {
  static korvo::engine::CitationProcessor shared;
  return shared;
}

korvo::engine::Style style(std::string_view name) {
  static korvo::engine::StyleCatalog catalog = korvo::engine::StyleCatalog(
      "/usr/share/citation-style-language/styles", std::filesystem::path());
  auto found = catalog.find(name);
  EXPECT_TRUE(found) << found.error();
  return found ? *std::move(found) : korvo::engine::Style();
}

korvo::engine::FormattedDocument formatIn(std::string_view styleText,
                                          korvo::engine::CitationProcessor &processor,
                                          const Items &items,
                                          const std::vector<CiteGroup> &groups) {
  auto document = processor.formatDocument(
      style("apa"), styleText, lookUpIn(items), groups.size(),
      [&](std::size_t group) -> const CiteGroup & { return groups[group]; }, true);
  EXPECT_TRUE(document) << document.error();
  return document ? *std::move(document) : korvo::engine::FormattedDocument();
}

std::vector<std::string> allTexts(const korvo::engine::FormattedDocument &document) {
  std::vector<std::string> texts;
  for (std::size_t group = 0; group < document.groups.size(); ++group) {
    texts.push_back(markup(document.group(group)));
  }
  for (const korvo::engine::BibliographyEntry &entry : document.bibliography.entries) {
    texts.push_back(entry.itemId + ": " + (entry.firstField ? markup(*entry.firstField) : "") +
                    markup(entry.text));
  }
  return texts;
}

Printed print(std::string_view styleName, const std::vector<CiteGroup> &groups,
              const Items &items) {
  auto document = processor().formatDocument(style(styleName), lookUpIn(items), groups, true);
  EXPECT_TRUE(document) << document.error();
  Printed printed;
  if (!document) {
    printed.groups.resize(groups.size());
    return printed;
  }
  for (std::size_t index = 0; index < document->groups.size(); ++index) {
    printed.groups.push_back(markup(document->group(index)));
  }
  for (const korvo::engine::BibliographyEntry &entry : document->bibliography.entries) {
    const std::string first = entry.firstField ? markup(*entry.firstField) + "\t" : "";
    printed.entries.push_back(first + markup(entry.text));
  }
  printed.bibliography = std::move(document->bibliography);
  return printed;
}

std::string printOne(std::string_view styleName, const CiteGroup &group, const Items &items) {
  return print(styleName, {group}, items).groups.at(0);
}

}  // namespace korvo_test
