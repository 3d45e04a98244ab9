// .bib files that are broken somewhere: what is broken costs as little as it can, and is told.

#include "ImportFixture.h"

#include <Tests/Support/ProcessorTime.h>

#include <gmock/gmock.h>

#include <chrono>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class BibTeXDamage : public ImportFixture {
 protected:
  // The entry stands between two sound ones. Gives what the middle one became, the problems told
  // beside; null if it is lost. The others must be there.
  Json between(std::string_view entry) {
    const ImportResult result =
        import("a.bib", "@book{before, title={Before}}\n" + std::string(entry) +
                            "\n@book{after, title={After}}\n");
    problems_ = problemsOf(result);
    Json middle;
    std::vector<std::string> others;
    for (const auto &reference : result.references) {
      if (reference.citationKey == "before" || reference.citationKey == "after") {
        others.push_back(reference.citationKey);
      } else {
        middle = Json::parse(reference.cslJson);
      }
    }
    EXPECT_THAT(others, ElementsAre("before", "after"));
    return middle;
  }

  std::chrono::duration<double> timeToImport(const std::string &bytes) {
    const auto beginning = test_support::processorTime();
    import("a.bib", "@book{first, title={First}}\n" + bytes);
    return test_support::processorTime() - beginning;
  }

  Messages problems_;
};

// Reading that takes a time that grows as the square of the length would take minutes or hours.
constexpr std::chrono::seconds longEnough{20};

TEST_F(BibTeXDamage, AFieldWithoutAnEqualsSignIsTakenAndTold) {
  const Json item = between("@book{k, title {Two}, year=2001}");
  EXPECT_EQ(item["title"], "Two");
  EXPECT_EQ(item["issued"]["date-parts"][0][0], 2001);
  EXPECT_THAT(problems_,
              ElementsAre("a.bib:2: k: there is no = behind \"title\"; what follows is taken as "
                          "its text"));
}

TEST_F(BibTeXDamage, AFieldWithoutAValueCostsThatField) {
  const Json item = between("@book{k, title, year=2001, note=, author={Smith, Jo}}");
  EXPECT_EQ(item["issued"]["date-parts"][0][0], 2001);
  EXPECT_EQ(item["author"][0]["family"], "Smith");
  EXPECT_THAT(problems_,
              ElementsAre("a.bib:2: k: there is no = behind \"title\", which is left out"));
}

TEST_F(BibTeXDamage, AFieldThatIsNotClosedCostsThatField) {
  const Json item = between("@book{k,\n  title={Two {and},\n  year=2001,\n  author={Smith, Jo}\n}");
  EXPECT_FALSE(item.contains("title"));
  EXPECT_EQ(item["issued"]["date-parts"][0][0], 2001);
  EXPECT_EQ(item["author"][0]["family"], "Smith");
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: k: the text of the field \"title\" has no end, and "
                                     "is left out"));
}

TEST_F(BibTeXDamage, AnEntryThatIsNotClosedKeepsTheFieldsThatAre) {
  const Json item = between("@book{k, title={Two}, year=2001");
  EXPECT_EQ(item["title"], "Two");
  EXPECT_EQ(item["issued"]["date-parts"][0][0], 2001);
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: k: the entry is not closed; what was read of it is "
                                     "kept"));
}

TEST_F(BibTeXDamage, AnEntryOfWhichNothingIsLeftIsTold) {
  EXPECT_TRUE(between("@book{open, title={Three\n").is_null());
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: open: the text of the field \"title\" has no end, "
                                     "and is left out",
                                     "a.bib:2: open: the entry is not closed; it is left out"));
}

TEST_F(BibTeXDamage, AnEntryInTheMidstOfALineSurvivesAnOpenOneBeforeIt) {
  const ImportResult result =
      import("a.bib", "@book{open, title={Three, @book{kept, title={Four}} @book{too, title={5}}");
  ASSERT_EQ(result.references.size(), 2U);
  EXPECT_EQ(result.references[0].citationKey, "kept");
  EXPECT_EQ(result.references[1].citationKey, "too");
}

TEST_F(BibTeXDamage, ABraceTooManyCostsNoField) {
  const Json item =
      between("@book{k,\n  title = {Two}},\n  author = {Smith, Jo},\n  year = 2001\n}");
  EXPECT_EQ(item["title"], "Two");
  EXPECT_EQ(item["author"][0]["family"], "Smith");
  EXPECT_EQ(item["issued"]["date-parts"][0][0], 2001);
  EXPECT_THAT(problems_, SizeIs(1));
}

TEST_F(BibTeXDamage, ABraceBehindABackslashIsTheSignWhereTheRestWouldBeLost) {
  Json item = between("@book{k,\n  title = {A {{B}}\\}},\n  author = {Smith, Jo}\n}");
  EXPECT_EQ(item["title"], "A B}");
  EXPECT_EQ(item["author"][0]["family"], "Smith");
  item = between("@book{k, title = {A \\{ B}, year = 2001}");
  EXPECT_EQ(item["title"], "A { B");
  EXPECT_EQ(item["issued"]["date-parts"][0][0], 2001);
  EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(BibTeXDamage, ABackslashBeforeTheClosingBraceCostsNothing) {
  const Json item = between("@book{k, file={C:\\docs\\}, title={Two},\n  path={C:\\docs\\}}");
  EXPECT_EQ(item["title"], "Two");
  EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(BibTeXDamage, ABackslashAtTheEndOfALineIsABlank) {
  EXPECT_EQ(between("@book{k, title={Two\\\nlines}}")["title"], "Two lines");
  EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(BibTeXDamage, AParenthesisWithinQuotesDoesNotCloseTheEntry) {
  const Json item = between("@article(k, title=\"One (1) and 2)\", journal={J)}, year=2001)");
  EXPECT_EQ(item["title"], "One (1) and 2)");
  EXPECT_EQ(item["container-title"], "J)");
  EXPECT_EQ(item["issued"]["date-parts"][0][0], 2001);
  EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(BibTeXDamage, AQuotationMarkWithinQuotesIsTakenForWhatItIs) {
  const Json item =
      between("@book{k, author=\"G\\\"odel, Kurt\", title=\"On \"sense\" and more\"}");
  EXPECT_EQ(item["author"][0]["family"], "Gödel");
  EXPECT_EQ(item["title"], "On \"sense\" and more");
}

TEST_F(BibTeXDamage, CommasTooManyOrTooFewCostNothing) {
  const Json item = between("@book{k,, title={Two},, year=2001\n  author={Smith, Jo},,}");
  EXPECT_EQ(item["title"], "Two");
  EXPECT_EQ(item["author"][0]["family"], "Smith");
  EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(BibTeXDamage, AnEntryWithoutAKeyIsKeptAndTold) {
  EXPECT_EQ(between("@book{, title={Two}}")["title"], "Two");
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: @book: the entry has no citation key"));
  EXPECT_EQ(between("@book{title={Two}, year=2001}")["title"], "Two");
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: @book: the entry has no citation key"));
}

TEST_F(BibTeXDamage, AKeyMayHaveBlanksAndSigns) {
  const ImportResult result =
      import("a.bib", "@book{Smith 2001, title={A}}\n@book{10.1/x(3)_\"a\"#+, title={B}}");
  ASSERT_EQ(result.references.size(), 2U);
  EXPECT_EQ(result.references[0].citationKey, "Smith 2001");
  EXPECT_EQ(result.references[1].citationKey, "10.1/x(3)_\"a\"#+");
}

TEST_F(BibTeXDamage, KindsWithAnUnderscoreAreTaken) {
  EXPECT_EQ(between("@web_page{k, title={Two}}")["type"], "webpage");
  EXPECT_EQ(between("@newspaper_article{k, title={Two}, journal={N}}")["container-title"], "N");
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_EQ(between("@shop_window{k, title={Two}}")["title"], "Two");
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: k: \"shop_window\" is no kind of work that is "
                                     "known; it is taken as a document"));
}

TEST_F(BibTeXDamage, APartOfABookTakesFromABookWithAnEditor) {
  const ImportResult result =
      import("a.bib",
             "@inbook{k, crossref={B}, title={Part}}\n@book{b, editor={Lee, Ann}, title={Whole}, "
             "year=2001, author={Roe, Jo}}");
  const Json part = Json::parse(result.references.at(0).cslJson);
  EXPECT_EQ(part["container-title"], "Whole");
  EXPECT_EQ(part["editor"][0]["family"], "Lee");
  EXPECT_EQ(part["container-author"][0]["family"], "Roe");
  EXPECT_EQ(part["issued"]["date-parts"][0][0], 2001);
  EXPECT_THAT(problemsOf(result), IsEmpty());
}

TEST_F(BibTeXDamage, CrossReferencesThatRunInACircleEnd) {
  const ImportResult result = import("a.bib",
                                     "@inbook{a, crossref={b}, title={A}}\n"
                                     "@book{b, crossref={a}, title={B}, year=2001}\n"
                                     "@book{self, crossref={self}, title={S}}\n");
  ASSERT_EQ(result.references.size(), 3U);
  EXPECT_EQ(Json::parse(result.references[0].cslJson)["container-title"], "B");
}

TEST_F(BibTeXDamage, ACrossReferenceToNothingIsTold) {
  EXPECT_EQ(between("@inbook{k, crossref={nowhere}, title={Part}}")["title"], "Part");
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: k: it refers to \"nowhere\", which is not in the "
                                     "file"));
}

TEST_F(BibTeXDamage, AFieldThatStandsTwiceIsTold) {
  EXPECT_EQ(between("@book{k, title={One}, title={Two}}")["title"], "One");
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: k: the field \"title\" stands there more than once; "
                                     "the first is taken"));
}

TEST_F(BibTeXDamage, AnAbbreviationThatNoUsedFieldNeedsIsNotReported) {
  EXPECT_EQ(between("@book{k, title={Two}, owner=me, timestamp = now # then}")["title"], "Two");
  EXPECT_THAT(problems_, IsEmpty());
}

TEST_F(BibTeXDamage, ALoneDollarIsTheSignAndTold) {
  EXPECT_EQ(between("@book{k, title={Costs $5}}")["title"], "Costs $5");
  EXPECT_THAT(problems_, ElementsAre("a.bib:2: k: a $ in \"title\" belongs to no formula, and is "
                                     "taken as the sign itself"));
}

TEST_F(BibTeXDamage, WhatIsNoFieldIsToldInWords) {
  for (const char *entry :
       {"@book{k, =x, title={Two}}", "@book{k, {x}, title={Two}}", "@book{k, #, title={Two}}",
        "@book{k, title={Two}, \"x\" = 3}", "@book{k title={Two}}", "@book{k, title={Two} x y}"}) {
    EXPECT_EQ(between(entry)["title"], "Two") << entry;
    for (const std::string &problem : problems_) {
      EXPECT_THAT(problem, Not(HasSubstr("expected"))) << entry;
      EXPECT_GT(problem.size(), std::string("a.bib:2: k: ").size() + 10) << entry;
    }
  }
}

TEST_F(BibTeXDamage, ASettingOfAStyleIsNoWork) {
  EXPECT_TRUE(between("@IEEEtranBSTCTL{IEEEexample:BSTcontrol, CTLuse_article_number = \"yes\"}")
                  .is_null());
  EXPECT_THAT(problems_, SizeIs(1));
}

TEST_F(BibTeXDamage, EntriesWithoutAnEndTakeNoLongTime) {
  std::string bytes;
  for (int index = 0; index < 40'000; ++index) {
    bytes += "@book{a,t={";
  }
  EXPECT_LT(timeToImport(bytes), longEnough);
}

TEST_F(BibTeXDamage, QuotationMarksWithoutEndTakeNoLongTime) {
  std::string bytes = "@book{a,t=\"";
  for (int index = 0; index < 300'000; ++index) {
    bytes += "\"% ";
  }
  EXPECT_LT(timeToImport(bytes), longEnough);
}

TEST_F(BibTeXDamage, LinesAndSignsWithoutEndTakeNoLongTime) {
  EXPECT_LT(timeToImport("@book{a, t" + std::string(1'000'000, '\n') + "}"), longEnough);
  EXPECT_LT(timeToImport("@book{a, title={" + std::string(1'000'000, '{')), longEnough);
  EXPECT_LT(timeToImport("@book{a, title={" + std::string(200'000, '$') + "}}"), longEnough);
  std::string parentheses;
  for (int index = 0; index < 300'000; ++index) {
    parentheses += "@a(";
  }
  EXPECT_LT(timeToImport(parentheses), longEnough);
}

TEST_F(BibTeXDamage, BracesThatNestWithoutEndDoNotExhaustTheStack) {
  const std::string open(100'000, '{');
  const std::string close(100'000, '}');
  const Json item = between("@book{k, title={x" + open + "y" + close + "z}, year=2001}");
  EXPECT_EQ(item["issued"]["date-parts"][0][0], 2001);
}

TEST_F(BibTeXDamage, EntriesThatNameManyOthersTakeNoLongTime) {
  std::string keys;
  std::string bytes;
  for (int index = 0; index < 300; ++index) {
    keys += "x" + std::to_string(index) + ",";
  }
  for (int index = 0; index < 300; ++index) {
    bytes += "@xdata{x" + std::to_string(index) + ", note={n}, xdata={" + keys + "}}\n";
  }
  EXPECT_LT(timeToImport(bytes + "@book{k, title={T}, xdata={" + keys + "}}"), longEnough);
}

}  // namespace
