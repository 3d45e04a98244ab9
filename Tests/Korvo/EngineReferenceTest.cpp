// The fast way through a document gives what the slow one does, which hands citeproc-js
// one citation after the other as its authors meant it, and it takes time in proportion
// to the citations.
#include "EngineDocument.h"
#include "EngineRandomDocuments.h"
#include "EngineSteps.h"

#include <Tests/Support/Effort.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <ctime>
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
    EXPECT_EQ(markup(fast->group(index)), markup(slow->group(index))) << index;
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

// Few works, so that most are cited once more in the note before, or a few notes before.
class EnginePositions : public testing::TestWithParam<const char *> {};

TEST_P(EnginePositions, AreTheSame) {
  std::mt19937 random(1637);
  constexpr std::size_t works = 4;
  const Items items = collidingLibrary(random, works);
  std::vector<CiteGroup> groups = randomGroups(random, 50, works);
  for (CiteGroup &group : groups) {
    if (random() % 2 == 0) {
      group.resize(1);
    }
    if (random() % 10 == 0) {
      std::ranges::for_each(group, [](Cite &cite) { cite.showInText = false; });
    }
    if (random() % 2 == 0) {
      group.front().pageRange = random() % 2 == 0 ? u"17" : u"17|of another edition";
    }
  }
  expectSameTexts(GetParam(), items, groups);
}

INSTANTIATE_TEST_SUITE_P(Styles, EnginePositions,
                         testing::Values("chicago-fullnote-bibliography-with-ibid", "oscola",
                                         "journal-of-the-warburg-and-courtauld-institutes",
                                         "sodertorns-hogskola-harvard-ibid"),
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

// What the program prints otherwise on purpose.
class EngineDifferences : public testing::Test {
 protected:
  static korvo::engine::FormattedDocument format(korvo::engine::CitationProcessor &by,
                                                 const char *styleName, const Items &items,
                                                 const std::vector<CiteGroup> &groups) {
    auto document = by.formatDocument(style(styleName), lookUpIn(items), groups, true);
    EXPECT_TRUE(document) << document.error();
    return document ? *std::move(document) : korvo::engine::FormattedDocument();
  }
};

TEST_F(EngineDifferences, AYearStandsInPlaceOfAPlaceholderForProgrammers) {
  const Items items = {{"bare", R"({"type":"book","issued":{"date-parts":[[1999]]}})"}};
  const std::vector<CiteGroup> groups = {{cite("bare")}};
  const char *mla = "modern-language-association";
  EXPECT_EQ(markup(format(processor(), mla, items, groups).group(0)), "(1999)");
  EXPECT_EQ(markup(format(referenceProcessor(), mla, items, groups).group(0)),
            "([CSL STYLE ERROR: reference with no printed form.])");
}

// In Turkish letters I comes after i.
TEST_F(EngineDifferences, TheOrderIsNotThatOfTheLanguageOfTheWorkPrintedLast) {
  const Items items = {
      {"first", R"({"type":"book","title":"T","author":[{"family":"Ia"}],"language":"tr"})"},
      {"second", R"({"type":"book","title":"T","author":[{"family":"iz"}],"language":"tr"})"}};
  const std::vector<CiteGroup> groups = {{cite("second")}, {cite("first")}};
  const auto order = [&](korvo::engine::CitationProcessor &by) {
    std::vector<std::string> ids;
    for (const auto &entry : format(by, "apa", items, groups).bibliography.entries) {
      ids.push_back(entry.itemId);
    }
    return ids;
  };
  EXPECT_EQ(order(processor()), (std::vector<std::string>{"first", "second"}));
  EXPECT_EQ(order(referenceProcessor()), (std::vector<std::string>{"second", "first"}));
}

TEST(EngineSteps, GrowWithTheCitationsOfOneWork) {
  const auto stepsFor = [](std::size_t citations) {
    StepCounter counter;
    const std::vector<CiteGroup> groups(citations, {cite("smith2001")});
    const auto document =
        counter.processor().formatDocument(style("apa"), lookUpIn(library()), groups, false);
    EXPECT_TRUE(document) << document.error();
    return document ? stepsOf(*document) : 0;
  };
  const double few = stepsFor(1000);
  EXPECT_GT(few, 0);
  EXPECT_LT(stepsFor(2000), 2.2 * few);
}

// Of the processor, in a machine that is warm, but has seen neither the items nor the document.
double secondsFor(const char *styleName, std::size_t citations, unsigned seed) {
  std::mt19937 random(seed);
  const Items items = collidingLibrary(random, citations / 5);
  const std::vector<CiteGroup> groups = randomGroups(random, citations, citations / 5);
  const std::clock_t start = std::clock();
  const auto document =
      processor().formatDocument(style(styleName), lookUpIn(items), groups, false);
  EXPECT_TRUE(document) << document.error();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST(EngineTime, TenTimesTheCitationsTakeAboutTenTimesAsLong) {
  for (const char *name : {"nature", "chicago-fullnote-bibliography"}) {
    constexpr std::size_t citations = test_support::effort(100, 50);
    secondsFor(name, citations, 1);
    const double few = std::min(secondsFor(name, citations, 2), secondsFor(name, citations, 3));
    const double many = secondsFor(name, 10 * citations, 4);
    // Twelve times is the aim; a busy machine needs some air. One by one it is a hundred.
    EXPECT_LT(many, 20 * few) << name << ": " << few << " s, " << many << " s";
  }
}

}  // namespace
