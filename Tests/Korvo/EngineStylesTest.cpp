// Known citations and bibliographies, compared with what the styles' manuals prescribe.
#include "EngineDocument.h"

#include <Tests/Support/Effort.h>

#include <gtest/gtest.h>

#include <algorithm>

using namespace korvo_test;

namespace {

const std::vector<CiteGroup> threeGroups = {
    {cite("smith2001", u"45")}, {cite("jones1999"), cite("gogh1888")}, {cite("smith2001")}};

}  // namespace

TEST(EngineStyles, APAPrintsAuthorsAndYearsAndAHangingAlphabeticalBibliography) {
  const Printed printed = print("apa", threeGroups);
  EXPECT_EQ(printed.groups,
            (std::vector<std::string>{"(Smith, 2001, p. 45)", "(Jones & Lee, 1999; van Gogh, 1888)",
                                      "(Smith, 2001)"}));
  EXPECT_EQ(printed.entries,
            (std::vector<std::string>{
                "Jones, A., & Lee, B. (1999). <i>Deep water</i>. Harbour Press.",
                "Smith, J. (2001). The shape of rivers. <i>Journal of Hydrology</i>, <i>12</i>(3), "
                "45–67.",
                "van Gogh, V. (1888). <i>On colour</i>. Arles."}));
  EXPECT_TRUE(printed.bibliography.hangingIndent);
  EXPECT_EQ(printed.bibliography.secondFieldAlign, korvo::engine::SecondFieldAlign::none);
}

TEST(EngineStyles, IEEENumbersByFirstMentionInBracketsAndSetsTheNumberApart) {
  const Printed printed = print("ieee", threeGroups);
  EXPECT_EQ(printed.groups, (std::vector<std::string>{"[1, p. 45]", "[2], [3]", "[1]"}));
  ASSERT_EQ(printed.entries.size(), 3u);
  EXPECT_EQ(
      printed.entries[0],
      "[1]\tJ. Smith, “The shape of rivers,” <i>Journal of Hydrology</i>, vol. 12, no. 3, pp. "
      "45–67, 2001.");
  EXPECT_EQ(printed.entries[2], "[3]\tV. van Gogh, <i>On colour</i>. Arles: Arles, 1888.");
  EXPECT_EQ(printed.bibliography.secondFieldAlign, korvo::engine::SecondFieldAlign::flush);
  EXPECT_EQ(printed.bibliography.firstFieldCharacters, 3u);
  EXPECT_FALSE(printed.bibliography.hangingIndent);
}

TEST(EngineStyles, NatureRaisesItsNumbers) {
  const Printed printed = print("nature", threeGroups);
  EXPECT_EQ(printed.groups,
            (std::vector<std::string>{"<sup>1</sup>", "<sup>2,3</sup>", "<sup>1</sup>"}));
  ASSERT_EQ(printed.entries.size(), 3u);
  EXPECT_EQ(
      printed.entries[0],
      "1.\tSmith, J. The shape of rivers. <i>Journal of Hydrology</i> <b>12</b>, 45–67 (2001).");
}

TEST(EngineStyles, ConsecutiveNumbersCollapseToARange) {
  EXPECT_EQ(printOne("nature", {cite("smith2001"), cite("jones1999"), cite("gogh1888")}),
            "<sup>1–3</sup>");
}

TEST(EngineStyles, ChicagoAuthorDatePrintsThePageAfterAComma) {
  const Printed printed = print("chicago-author-date", threeGroups);
  EXPECT_EQ(printed.groups,
            (std::vector<std::string>{"(Smith 2001, 45)", "(Jones and Lee 1999; van Gogh 1888)",
                                      "(Smith 2001)"}));
  ASSERT_EQ(printed.entries.size(), 3u);
  EXPECT_EQ(printed.entries[0], "Gogh, Vincent van. 1888. <i>On Colour</i>. Arles: Arles.");
}

TEST(EngineStyles, ChicagoNotesShortenTheSecondMention) {
  const Printed printed = print("chicago-fullnote-bibliography", threeGroups);
  EXPECT_EQ(printed.groups[0],
            "John Smith, “The Shape of Rivers,” <i>Journal of Hydrology</i> 12, no. 3 (2001): 45.");
  EXPECT_EQ(printed.groups[2], "Smith, “The Shape of Rivers.”");
  EXPECT_EQ(print("chicago-note-bibliography", threeGroups).groups[0],
            "Smith, “The Shape of Rivers,” 45.");
}

TEST(EngineStyles, ALongTitleIsShortenedWhereTheStyleWantsAShortOne) {
  const Items items = {
      {"colon", R"({"type":"book","title":"On rivers: A history of water","author":[
          {"family":"Smith","given":"John"}],"issued":{"date-parts":[[2001]]}})"},
      {"face", R"({"type":"book","title":"<i>Rivers: A history</i> of water","author":[
          {"family":"Jones","given":"Ann"}],"issued":{"date-parts":[[2002]]}})"},
      {"own", R"({"type":"book","title":"Seas: Again","title-short":"Waters","author":[
          {"family":"Lee","given":"Bo"}],"issued":{"date-parts":[[2003]]}})"}};
  const std::vector<CiteGroup> groups = {{cite("colon")}, {cite("face")}, {cite("own")},
                                         {cite("colon")}, {cite("face")}, {cite("own")}};
  const Printed notes = print("chicago-fullnote-bibliography", groups, items);
  EXPECT_EQ(notes.groups[0], "John Smith, <i>On Rivers: A History of Water</i>, 2001.");
  EXPECT_EQ(notes.groups[3], "Smith, <i>On Rivers</i>.");
  EXPECT_EQ(notes.groups[4], "Jones, Rivers: A History<i> of Water</i>.");
  EXPECT_EQ(notes.groups[5], "Lee, <i>Waters</i>.");
}

TEST(EngineStyles, NamesThatEndInOthersEndInTheStylesEtAl) {
  const Items items = {
      {"one", R"({"type":"book","title":"T","issued":{"date-parts":[[2001]]},"author":[
          {"family":"Smith","given":"John"},{"literal":"others"}]})"},
      {"two", R"({"type":"book","title":"U","issued":{"date-parts":[[2002]]},"author":[
          {"family":"Jones","given":"Ann"},{"family":"Lee","given":"Bo"},{"literal":"others"}]})"}};
  const Printed apa = print("apa", {{cite("one")}, {cite("two")}}, items);
  EXPECT_EQ(apa.groups, (std::vector<std::string>{"(Smith et al., 2001)", "(Jones et al., 2002)"}));
  EXPECT_EQ(apa.entries, (std::vector<std::string>{"Jones, A., Lee, B., et al. (2002). <i>U</i>.",
                                                   "Smith, J. et al. (2001). <i>T</i>."}));
  EXPECT_EQ(print("chicago-author-date", {{cite("one")}}, items).entries[0],
            "Smith, John et al. 2001. <i>T</i>.");
}

TEST(EngineStyles, ANoteRightAfterAnotherOfTheSameWorkSaysIbid) {
  const Printed printed =
      print("chicago-fullnote-bibliography-with-ibid", {{cite("smith2001", u"45")},
                                                        {cite("smith2001", u"46")},
                                                        {cite("jones1999")},
                                                        {cite("smith2001")}});
  EXPECT_EQ(printed.groups[1], "Ibid., 46.");
  EXPECT_EQ(printed.groups[3], "Smith, “The Shape of Rivers.”");
}

TEST(EngineStyles, AGroupBetweenTwoNotesKeepsIbidAway) {
  const Printed printed = print("chicago-fullnote-bibliography-with-ibid",
                                {{cite("smith2001")}, {}, {cite("smith2001")}});
  EXPECT_EQ(printed.groups[1], "");
  EXPECT_EQ(printed.groups[2], "Smith, “The Shape of Rivers.”");
}

TEST(EngineStyles, ANumberedNoteStyleRefersBackToTheFirstNote) {
  const Printed printed =
      print("oscola", {{cite("jones1999")}, {cite("smith2001")}, {cite("jones1999")}});
  EXPECT_EQ(printed.groups[2], "Jones and Lee (n 1).");
}

TEST(EngineStyles, MLAPrintsAuthorAndPageWithoutAComma) {
  const Printed printed = print("modern-language-association", {{cite("jones1999", u"45")}});
  EXPECT_EQ(printed.groups[0], "(Jones and Lee 45)");
  EXPECT_EQ(printed.entries.at(0),
            "Jones, Ann, and Bo Lee. <i>Deep Water</i>. Harbour Press, 1999.");
}

TEST(EngineStyles, VancouverPrintsNumbersInParentheses) {
  const Printed printed = print("vancouver", threeGroups);
  EXPECT_EQ(printed.groups, (std::vector<std::string>{"(1)", "(2,3)", "(1)"}));
  EXPECT_EQ(printed.entries.at(1), "2.\tJones A, Lee B. Deep water. London: Harbour Press; 1999.");
}

TEST(EngineStyles, AMARaisesTheNumberAndThePage) {
  EXPECT_EQ(printOne("american-medical-association", {cite("smith2001", u"45")}),
            "<sup>1(p45)</sup>");
}

TEST(EngineStyles, ALabelStyleMakesLabelsOfNamesAndYears) {
  EXPECT_EQ(printOne("din-1505-2-alphanumeric", {cite("jones1999")}), "[JoLe99]");
}

TEST(EngineStyles, WorksOfOneAuthorAndYearAreToldApart) {
  const Printed printed = print("apa", {{cite("smith2001b")}, {cite("smith2001")}});
  EXPECT_EQ(printed.groups, (std::vector<std::string>{"(Smith, 2001b)", "(Smith, 2001a)"}));
}

TEST(EngineStyles, TheOrderWithinAGroupIsTheStyles) {
  EXPECT_EQ(printOne("apa", {cite("smith2001"), cite("jones1999")}),
            "(Jones & Lee, 1999; Smith, 2001)");
}

TEST(EngineStyles, ADependentStyleHasItsParentsRulesAndItsOwnLanguage) {
  const korvo::engine::Style journal = style("Nature Physics");
  EXPECT_EQ(journal.name.baseName, "nature-physics");
  EXPECT_EQ(journal.file.filename(), "nature.csl");
  EXPECT_EQ(printOne("Nature Physics", {cite("smith2001")}), "<sup>1</sup>");
}

TEST(EngineStyles, AStyleWithoutABibliographyStillFormatsCitations) {
  const Printed printed = print("bluebook-inline", {{cite("jones1999")}});
  EXPECT_FALSE(style("bluebook-inline").hasBibliography);
  EXPECT_FALSE(printed.groups[0].empty());
  EXPECT_TRUE(printed.entries.empty());
}

TEST(EngineStyles, NoBibliographyIsMadeWhenNoneIsWanted) {
  const std::vector<CiteGroup> groups = {{cite("smith2001")}};
  const auto document =
      processor().formatDocument(style("apa"), lookUpIn(library()), groups, false);
  ASSERT_TRUE(document);
  EXPECT_EQ(markup(document->group(0)), "(Smith, 2001)");
  EXPECT_TRUE(document->bibliography.entries.empty());
}

TEST(EngineStyles, ADocumentWithoutCitationsHasNeitherTextsNorEntries) {
  const Printed printed = print("apa", {});
  EXPECT_TRUE(printed.groups.empty());
  EXPECT_TRUE(printed.entries.empty());
}

// Every eightieth of the installed styles or some fewer, with every option in one document.
TEST(EngineStyles, OfEverySortFormatWithoutPlaceholdersOrMarks) {
  Cite year = cite("jones1999");
  year.yearOnly = true;
  Cite hidden = cite("curie1903");
  hidden.showInText = false;
  Cite stripped = cite("smith2001");
  stripped.stripEnclosure = true;
  Cite onTheLine = cite("gogh1888");
  onTheLine.suppressSuperscript = true;
  const std::vector<CiteGroup> groups = {{cite("smith2001", u"45")},
                                         {cite("jones1999"), cite("smith2001b")},
                                         {year},
                                         {hidden},
                                         {stripped},
                                         {onTheLine},
                                         {cite("smith2001", u"45")},
                                         {cite("smith2001")},
                                         {hidden, year}};
  korvo::engine::StyleCatalog catalog("/usr/share/citation-style-language/styles", {});
  std::size_t formatted = 0;
  for (std::size_t index = 0; index < catalog.all().size();
       index += test_support::effort(80, 400)) {
    const std::string name = catalog.all()[index].baseName;
    const Printed printed = print(name, groups);
    for (std::size_t group = 0; group < groups.size(); ++group) {
      EXPECT_EQ(printed.groups[group].empty(), group == 3) << name << ", group " << group;
    }
    std::string all;
    for (const auto *texts : {&printed.groups, &printed.entries}) {
      for (const std::string &text : *texts) {
        all += text;
      }
    }
    for (const char *wrong : {"NO_PRINTED_FORM", "STYLE ERROR", "undefined", "NaN"}) {
      EXPECT_EQ(all.find(wrong), std::string::npos) << name << ": " << all;
    }
    EXPECT_TRUE(std::ranges::none_of(
        all, [](unsigned char byte) { return byte < 32 && byte != '\t' && byte != '\n'; }))
        << name << ": " << all;
    ++formatted;
  }
  EXPECT_GT(formatted, test_support::effort(100u, 20u));
}
