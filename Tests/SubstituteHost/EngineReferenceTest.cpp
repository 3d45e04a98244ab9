// The fast way through a document gives what the slow one does, which hands citeproc-js
// one citation after the other as its authors meant it, and it takes time in proportion
// to the citations.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <random>

#include "EngineDocument.h"

using namespace enginetest;

namespace {

// Few names, titles and years, so that works must be told apart all the time.
Items collidingLibrary(std::mt19937 &random, std::size_t count) {
  constexpr std::array families = {"Smith", "Jones", "van Gogh", "Müller", "de la Cruz", "Li"};
  constexpr std::array given = {"John", "Jane", "A. B.", "Jean-Paul"};
  constexpr std::array types = {"article-journal", "book", "chapter", "thesis", "webpage"};
  const auto number = [&](std::size_t below) { return random() % below; };
  Items items;
  for (std::size_t index = 0; index < count; ++index) {
    std::string authors;
    for (std::size_t people = number(4); people > 0; --people) {
      authors += std::string(authors.empty() ? "" : ",") + R"({"family":")" +
                 families[number(families.size())] + R"(","given":")" +
                 given[number(given.size())] + "\"}";
    }
    items["item" + std::to_string(index)] =
        R"({"type":")" + std::string(types[number(types.size())]) + R"(","title":"Title )" +
        std::to_string(number(9)) + R"( of things","author":[)" + authors +
        R"(],"issued":{"date-parts":[[)" + std::to_string(1990 + number(3)) +
        R"(]]},"container-title":"Journal","volume":")" + std::to_string(index) +
        R"(","page":"3-7","publisher":"Press"})";
  }
  return items;
}

std::vector<CiteGroup> randomGroups(std::mt19937 &random, std::size_t count, std::size_t items) {
  std::vector<CiteGroup> groups(count);
  for (CiteGroup &group : groups) {
    for (std::size_t cites = 1 + random() % 3; cites > 0; --cites) {
      Cite made = cite("item" + std::to_string(random() % items));
      if (random() % 3 == 0) {
        made.pageRange = u"1" + std::u16string(1, static_cast<char16_t>(u'0' + random() % 10));
      }
      if (random() % 5 == 0) {
        made.prefix = u"see ";
      }
      group.push_back(std::move(made));
    }
  }
  return groups;
}

// Without what the reference cannot show: how the bibliography is laid out.
engine::FormattedDocument textsOf(engine::FormattedDocument document) {
  std::vector<engine::BibliographyEntry> entries = std::move(document.bibliography.entries);
  document.bibliography = {};
  document.bibliography.entries = std::move(entries);
  return document;
}

engine::CitationProcessor &referenceProcessor() {
  static const std::string script = [] {
    std::ifstream stream(CITATION_REFERENCE_SCRIPT, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }();
  static engine::CitationProcessor shared("/usr/share/citation-style-language/locales", script);
  return shared;
}

class EngineReference : public testing::TestWithParam<const char *> {};

TEST_P(EngineReference, GivesTheSameTexts) {
  std::mt19937 random(2026);
  const Items items = collidingLibrary(random, 25);
  const std::vector<CiteGroup> groups = randomGroups(random, 40, 25);
  const auto fast = processor().formatDocument(style(GetParam()), lookUpIn(items), groups, true);
  ASSERT_TRUE(fast) << fast.error();
  const auto slow =
      referenceProcessor().formatDocument(style(GetParam()), lookUpIn(items), groups, true);
  ASSERT_TRUE(slow) << slow.error();
  for (std::size_t index = 0; index < groups.size(); ++index) {
    EXPECT_EQ(markup(fast->groups[index]), markup(slow->groups[index])) << index;
  }
  EXPECT_EQ(textsOf(*fast), textsOf(*slow));
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
    [](const auto &instance) {
      std::string name = instance.param;
      std::ranges::replace(name, '-', '_');
      return name;
    });

double secondsFor(const char *styleName, std::size_t citations) {
  std::mt19937 random(1);
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
    secondsFor(name, 300);
    const double few = std::min(secondsFor(name, 300), secondsFor(name, 300));
    const double many = secondsFor(name, 3000);
    // Twelve times is the aim; a busy machine needs some air. One by one it is a hundred.
    EXPECT_LT(many, 20 * few) << name << ": " << few << " s, " << many << " s";
  }
}

}  // namespace
