// The fast way through a document gives what the slow one does, which hands citeproc-js
// one citation after the other as its authors meant it, and it takes time in proportion
// to the citations.
#include "EngineDocument.h"
#include "EngineRandomDocuments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <random>

using namespace korvo_test;

namespace {

// Without what the reference cannot show: how the bibliography is laid out.
korvo::engine::FormattedDocument textsOf(korvo::engine::FormattedDocument document) {
  std::vector<korvo::engine::BibliographyEntry> entries = std::move(document.bibliography.entries);
  document.bibliography = {};
  document.bibliography.entries = std::move(entries);
  return document;
}

void expectSameTexts(const char *styleName, const Items &items,
                     const std::vector<CiteGroup> &groups) {
  const auto fast = processor().formatDocument(style(styleName), lookUpIn(items), groups, true);
  ASSERT_TRUE(fast) << fast.error();
  const auto slow =
      referenceProcessor().formatDocument(style(styleName), lookUpIn(items), groups, true);
  ASSERT_TRUE(slow) << slow.error();
  for (std::size_t index = 0; index < groups.size(); ++index) {
    EXPECT_EQ(markup(fast->groups[index]), markup(slow->groups[index])) << index;
  }
  const auto &entries = fast->bibliography.entries;
  const auto &slowEntries = slow->bibliography.entries;
  ASSERT_EQ(entries.size(), slowEntries.size());
  for (std::size_t index = 0; index < entries.size(); ++index) {
    EXPECT_EQ(markup(entries[index].text), markup(slowEntries[index].text))
        << entries[index].itemId << ", " << slowEntries[index].itemId;
  }
  EXPECT_EQ(textsOf(*fast), textsOf(*slow));
}

std::string nameOfTest(const testing::TestParamInfo<const char *> &instance) {
  std::string name = instance.param;
  std::ranges::replace(name, '-', '_');
  return name;
}

class EngineReference : public testing::TestWithParam<const char *> {};

TEST_P(EngineReference, GivesTheSameTexts) {
  std::mt19937 random(2026);
  const Items items = collidingLibrary(random, 25);
  expectSameTexts(GetParam(), items, randomGroups(random, 40, 25));
}

INSTANTIATE_TEST_SUITE_P(
    Styles, EngineReference,
    testing::Values("apa", "ieee", "nature", "vancouver", "american-medical-association",
                    "modern-language-association", "chicago-author-date",
                    "chicago-note-bibliography", "chicago-fullnote-bibliography-with-ibid",
                    "oscola", "elsevier-harvard", "springer-basic-author-date", "cell", "science",
                    "american-sociological-association", "harvard-cite-them-right",
                    "turabian-fullnote-bibliography", "modern-humanities-research-association",
                    "american-political-science-association", "journal-of-zoology",
                    "din-1505-2-alphanumeric", "iso690-author-date-fr"),
    nameOfTest);

// What citeproc-js finds within a text, and what depends on its language.
class EngineTypography : public testing::TestWithParam<const char *> {};

TEST_P(EngineTypography, OfMarkupAndQuotationMarksIsTheSame) {
  constexpr std::array titles = {
      R"(The \"quoted\" word and 'another' one)",
      R"(L’été d'un “curly” ‘inner’ «guillemet» « et espace »)",
      R"(On <i>Drosophila</i>, <b>bold</b>, H<sub>2</sub>O, x<sup>2</sup> and <sc>caps</sc>)",
      R"(A <span class=\"nocase\">McDonald iPhone</span> and an <i>unclosed tag)",
      R"((\"odd) 5' 3\" rock'n'roll ISTANBUL IĞDIR straße „so‘ ‚nicht“: why? Because!)",
      R"('tis the season ; of $& and $$ < 3 > 2)",
      "",
  };
  constexpr std::array languages = {"en", "tr", "de-DE", "x!"};
  std::mt19937 random(1789);
  Items items;
  for (std::size_t index = 0; index < 2 * titles.size(); ++index) {
    items["item" + std::to_string(index)] =
        R"({"type":")" + std::string(index % 2 == 0 ? "article-journal" : "chapter") +
        R"(","title":")" + titles[index % titles.size()] + R"(","container-title":")" +
        titles[(index + 3) % titles.size()] + R"(","language":")" +
        languages[index % languages.size()] +
        R"(","author":[{"family":"O'Neill","given":"İ. d’A."},{"literal":")" +
        titles[(index + 1) % titles.size()] + R"("}],"page":"3-7","publisher":"N'Djamena"})";
  }
  expectSameTexts(GetParam(), items, randomGroups(random, 20, items.size()));
}

INSTANTIATE_TEST_SUITE_P(Styles, EngineTypography,
                         testing::Values("apa", "ieee", "nature", "modern-language-association",
                                         "chicago-author-date", "oscola", "cell",
                                         "din-1505-2-alphanumeric", "iso690-author-date-fr"),
                         nameOfTest);

// In a machine that is warm, but has seen neither the items nor the document.
double secondsFor(const char *styleName, std::size_t citations, unsigned seed) {
  std::mt19937 random(seed);
  const Items items = collidingLibrary(random, citations / 5);
  const std::vector<CiteGroup> groups = randomGroups(random, citations, citations / 5);
  const auto start = std::chrono::steady_clock::now();
  const auto document =
      processor().formatDocument(style(styleName), lookUpIn(items), groups, false);
  EXPECT_TRUE(document) << document.error();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(EngineTime, TenTimesTheCitationsTakeAboutTenTimesAsLong) {
  for (const char *name : {"nature", "chicago-fullnote-bibliography"}) {
    secondsFor(name, 300, 1);
    const double few = std::min(secondsFor(name, 300, 2), secondsFor(name, 300, 3));
    const double many = secondsFor(name, 3000, 4);
    // Twelve times is the aim; a busy machine needs some air. One by one it is a hundred.
    EXPECT_LT(many, 20 * few) << name << ": " << few << " s, " << many << " s";
  }
}

}  // namespace
