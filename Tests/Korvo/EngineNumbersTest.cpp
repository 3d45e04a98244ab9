// Numbers of works that move: a citation inserted early gives all works after it other numbers,
// and texts that were printed before are taken from memory with the new ones. Every answer is the
// one of an engine that remembers nothing and of citeproc-js as its authors use it.
#include "EngineRandomDocuments.h"

#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>

#include <algorithm>

using namespace korvo_test;
using test_support::readFile;
using test_support::TemporaryDirectory;

namespace {

// Numbers of one, two and three digits.
constexpr std::size_t itemCount = 104;

std::vector<CiteGroup> numberedGroups(std::size_t items) {
  std::vector<CiteGroup> groups;
  for (std::size_t item = 0; item < items; ++item) {
    groups.push_back({cite("item" + std::to_string(item))});
  }
  // Neighbours, neighbours but one, one work twice, and as the digits grow more.
  for (const std::size_t first : {0U, 2U, 7U, 40U, 96U}) {
    CiteGroup group;
    for (const std::size_t step : {0U, 1U, 2U, 4U, 5U, 5U}) {
      group.push_back(cite("item" + std::to_string(first + step)));
    }
    group.back().pageRange = u"12";
    groups.push_back(group);
    groups.push_back({group[0], group[1]});
    groups.push_back({group[2], group[0]});
  }
  return groups;
}

struct Answer {
  std::vector<std::string> texts;
  std::size_t firstFieldCharacters = 0;

  explicit Answer(const korvo::engine::FormattedDocument &document)
      : texts(allTexts(document)),
        firstFieldCharacters(document.bibliography.firstFieldCharacters) {}
};

class Numbers {
 public:
  explicit Numbers(korvo::engine::Style printed) : style_(std::move(printed)) {}

  void expectFreshAnswer(const std::vector<CiteGroup> &groups, const std::string &step) {
    SCOPED_TRACE(step);
    const Answer remembered = ask(processor(), style_, groups);
    korvo::engine::Style fresh = style_;
    fresh.file = directory_.write("fresh.csl", readFile(style_.file) + "<!-- " + step + " -->");
    const Answer printed = ask(processor(), fresh, groups);
    EXPECT_EQ(remembered.texts, printed.texts);
    EXPECT_EQ(remembered.firstFieldCharacters, printed.firstFieldCharacters);
  }

  void expectReferenceAnswer(const std::vector<CiteGroup> &groups) {
    EXPECT_EQ(ask(processor(), style_, groups).texts,
              ask(referenceProcessor(), style_, groups).texts);
  }

  void expectFreshAnswers() {
    std::vector<CiteGroup> groups = numberedGroups(itemCount - 4);
    expectFreshAnswer(groups, "first");
    groups.insert(groups.begin(), {cite("item103")});
    expectFreshAnswer(groups, "one more at the beginning");
    groups.insert(groups.begin() + 9, {cite("item102"), cite("item101")});
    expectFreshAnswer(groups, "two more");
    std::swap(groups[3], groups[30]);
    expectFreshAnswer(groups, "two changed places");
    groups.erase(groups.begin(), groups.begin() + 2);
    expectFreshAnswer(groups, "two less");
    expectReferenceAnswer(groups);
  }

 private:
  Answer ask(korvo::engine::CitationProcessor &asked, const korvo::engine::Style &style,
             const std::vector<CiteGroup> &groups) {
    const auto document = asked.formatDocument(style, lookUpIn(items_), groups, true);
    EXPECT_TRUE(document) << document.error();
    return Answer(document ? *document : korvo::engine::FormattedDocument());
  }

  static Items makeItems() {
    std::mt19937 random(1887);
    return collidingLibrary(random, itemCount);
  }

  TemporaryDirectory directory_;
  Items items_ = makeItems();
  korvo::engine::Style style_;
};

class EngineNumbers : public testing::TestWithParam<const char *> {};

TEST_P(EngineNumbers, ThatMoveAreThoseOfAFreshEngine) {
  Numbers(style(GetParam())).expectFreshAnswers();
}

INSTANTIATE_TEST_SUITE_P(Styles, EngineNumbers,
                         testing::Values("ieee", "nature", "chinese-gb7714-1987-numeric"),
                         [](const auto &instance) {
                           std::string name = instance.param;
                           std::ranges::replace(name, '-', '_');
                           return name;
                         });

// A numeric style with these rules for a citation, and with the same in its bibliography. The
// works' volumes are numbers that follow on their own.
korvo::engine::Style numericStyle(const TemporaryDirectory &directory, const std::string &rules) {
  korvo::engine::Style made = style("ieee");
  const std::string text = R"csl(<?xml version="1.0" encoding="utf-8"?>
<style xmlns="http://purl.org/net/xbiblio/csl" class="in-text" version="1.0">
<info><title>Numbers</title><id>numbers</id><updated>2020-01-01T00:00:00Z</updated></info>
<citation collapse="citation-number"><sort><key variable="citation-number"/></sort>
<layout delimiter="," prefix="(" suffix=")">)csl" +
                           rules + R"csl(</layout></citation>
<bibliography second-field-align="flush"><layout suffix=".">
<text variable="citation-number" suffix=" "/><group delimiter="; ">)csl" +
                           rules + R"csl(<text variable="title"/></group></layout></bibliography>
</style>)csl";
  made.file = directory.write("numeric.csl", text);
  return made;
}

TEST(EngineNumbersInRules, BesideNumbersOfTheWorkAreThoseOfAFreshEngine) {
  const TemporaryDirectory directory;
  Numbers(
      numericStyle(directory, R"(<text variable="citation-number"/><number variable="volume"/>)"))
      .expectFreshAnswers();
}

TEST(EngineNumbersInRules, PrintedTwiceAreThoseOfAFreshEngine) {
  const TemporaryDirectory directory;
  Numbers(numericStyle(directory, R"(<text variable="citation-number"/>
      <text variable="citation-number" prefix="No. " font-style="italic"/>)"))
      .expectFreshAnswers();
}

TEST(EngineNumbersInRules, InCapitalLettersAreThoseOfAFreshEngine) {
  const TemporaryDirectory directory;
  Numbers(numericStyle(directory, R"(<text variable="citation-number" text-case="uppercase"/>)"))
      .expectFreshAnswers();
}

// Characters that stand for marks and numbers while a document is printed.
TEST(EngineNumbersInRules, AreNotMixedUpWithControlCharactersOfAStyle) {
  const TemporaryDirectory directory;
  const korvo::engine::Style printed =
      numericStyle(directory,
                   "<text variable=\"citation-number\" prefix=\"\u0080a&#128;b\" "
                   "suffix=\"c&#x81;d&amp;#2;e\"/>");
  std::mt19937 random(1887);
  const Items items = collidingLibrary(random, 1);
  const auto document = processor().formatDocument(printed, lookUpIn(items),
                                                   std::vector<CiteGroup>{{cite("item0")}}, true);
  ASSERT_TRUE(document) << document.error();
  EXPECT_EQ(markup(document->group(0)), "(a b1c d e)");
}

}  // namespace
