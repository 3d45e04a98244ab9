// What an author can ask of a cite.
#include "EngineDocument.h"

#include <gtest/gtest.h>

using namespace korvo_test;

namespace {

Cite yearOnly(Cite made) {
  made.yearOnly = true;
  return made;
}

Cite notShown(Cite made) {
  made.showInText = false;
  return made;
}

Cite notListed(Cite made) {
  made.includeInBibliography = false;
  return made;
}

Cite withoutEnclosure(Cite made) {
  made.stripEnclosure = true;
  return made;
}

Cite onTheLine(Cite made) {
  made.suppressSuperscript = true;
  return made;
}

Cite between(Cite made, std::u16string_view prefix, std::u16string_view suffix) {
  made.prefix = prefix;
  made.suffix = suffix;
  return made;
}

}  // namespace

TEST(EngineOptions, ARangeOfPagesGetsThePluralAndADash) {
  EXPECT_EQ(printOne("apa", {cite("smith2001", u"45-47")}), "(Smith, 2001, pp. 45–47)");
}

TEST(EngineOptions, ARangeWrittenWithADashIsShortenedAsOneWithAHyphen) {
  EXPECT_EQ(printOne("chicago-author-date", {cite("smith2001", u"145–147")}),
            "(Smith 2001, 145–47)");
  EXPECT_EQ(printOne("chicago-author-date", {cite("smith2001", u"145-147")}),
            "(Smith 2001, 145–47)");
}

TEST(EngineOptions, APageRangeMayBringItsOwnLabel) {
  EXPECT_EQ(printOne("apa", {cite("jones1999", u"ch. 3")}), "(Jones & Lee, 1999, Chapter 3)");
}

TEST(EngineOptions, APageRangeOfBlanksIsNone) {
  EXPECT_EQ(printOne("apa", {cite("smith2001", u"  ")}), "(Smith, 2001)");
}

TEST(EngineOptions, PrefixAndSuffixStandInsideTheEnclosure) {
  EXPECT_EQ(printOne("apa", {between(cite("smith2001", u"45"), u"see ", u", fig. 2")}),
            "(see Smith, 2001, p. 45, fig. 2)");
  EXPECT_EQ(printOne("nature", {between(cite("smith2001"), u"see ", u"")}), "<sup>see 1</sup>");
}

TEST(EngineOptions, APrefixWithoutABlankIsSetOffByOne) {
  EXPECT_EQ(printOne("apa", {between(cite("smith2001"), u"see", u"")}), "(see Smith, 2001)");
}

TEST(EngineOptions, YearOnlyLeavesTheAuthorOut) {
  EXPECT_EQ(printOne("apa", {yearOnly(cite("smith2001", u"45"))}), "(2001, p. 45)");
  EXPECT_EQ(printOne("chicago-author-date", {yearOnly(cite("gogh1888"))}), "(1888)");
}

TEST(EngineOptions, YearOnlyKeepsTheNumberOfANumericStyle) {
  EXPECT_EQ(printOne("ieee", {yearOnly(cite("smith2001"))}), "[1]");
  EXPECT_EQ(printOne("nature", {yearOnly(cite("smith2001"))}), "<sup>1</sup>");
}

TEST(EngineOptions, YearOnlyPrintsTheYearWhereTheStyleHasNothingButTheAuthor) {
  EXPECT_EQ(printOne("modern-language-association", {yearOnly(cite("jones1999"))}), "(1999)");
  EXPECT_EQ(printOne("modern-language-association",
                     {between(yearOnly(cite("jones1999")), u"see ", u"!"), cite("smith2001")}),
            "(see 1999!; Smith)");
  EXPECT_EQ(printOne("modern-language-association", {yearOnly(cite("jones1999", u"45"))}), "(45)");
}

TEST(EngineOptions, AYearThatTheStyleDrawsTogetherIsPrintedOnce) {
  const Cite plain = cite("smith2001");
  EXPECT_EQ(printOne("springer-basic-author-date", {cite("smith2001", u"45"), plain}),
            "(Smith 2001, p. 45)");
  EXPECT_EQ(printOne("springer-basic-author-date",
                     {cite("smith2001", u"45"), between(plain, u"see", u"")}),
            "(Smith 2001, p. 45, see 2001)");
}

TEST(EngineOptions, ACiteNotShownIsListedAndNumbered) {
  const Printed printed = print("ieee", {{notShown(cite("smith2001"))}, {cite("jones1999")}});
  EXPECT_EQ(printed.groups, (std::vector<std::string>{"", "[2]"}));
  ASSERT_EQ(printed.entries.size(), 2u);
  EXPECT_TRUE(printed.entries[0].starts_with("[1]\tJ. Smith"));
}

TEST(EngineOptions, ACiteNotShownLeavesTheOthersOfItsGroup) {
  EXPECT_EQ(printOne("apa", {notShown(cite("smith2001")), cite("jones1999")}),
            "(Jones & Lee, 1999)");
}

TEST(EngineOptions, ADocumentWithNothingShownStillHasItsBibliography) {
  const Printed printed = print("apa", {{notShown(cite("smith2001"))}});
  EXPECT_EQ(printed.groups, std::vector<std::string>{""});
  EXPECT_EQ(printed.entries.size(), 1u);
}

TEST(EngineOptions, ACiteKeptOutOfTheBibliographyIsShown) {
  const Printed printed = print("apa", {{notListed(cite("smith2001"))}, {cite("jones1999")}});
  EXPECT_EQ(printed.groups[0], "(Smith, 2001)");
  ASSERT_EQ(printed.entries.size(), 1u);
  EXPECT_EQ(printed.bibliography.entries[0].itemId, "jones1999");
}

TEST(EngineOptions, AWorkIsListedAsSoonAsOneOfItsCitesWantsIt) {
  EXPECT_EQ(print("apa", {{notListed(cite("smith2001"))}, {cite("smith2001")}}).entries.size(), 1u);
}

TEST(EngineOptions, AnEntryAfterOneKeptOutIsNotMissingItsAuthor) {
  // The style prints a dash for the author of the entry before.
  const Printed printed =
      print("chicago-author-date", {{notListed(cite("smith2001"))}, {cite("smith2001b")}});
  ASSERT_EQ(printed.entries.size(), 1u);
  EXPECT_TRUE(printed.entries[0].starts_with("Smith, John. 2001b.")) << printed.entries[0];
}

TEST(EngineOptions, EnclosuresAreStripped) {
  const CiteGroup one = {withoutEnclosure(cite("smith2001", u"45"))};
  EXPECT_EQ(printOne("apa", one), "Smith, 2001, p. 45");
  EXPECT_EQ(printOne("ieee", one), "1, p. 45");
  EXPECT_EQ(printOne("vancouver", one), "1");
  const CiteGroup two = {withoutEnclosure(cite("smith2001")), cite("jones1999")};
  EXPECT_EQ(printOne("apa", two), "Jones & Lee, 1999; Smith, 2001");
  EXPECT_EQ(printOne("ieee", two), "1, 2");
}

TEST(EngineOptions, TheAuthorsOwnBracketsAreNotStripped) {
  EXPECT_EQ(printOne("apa", {withoutEnclosure(between(cite("smith2001"), u"(see ", u")"))}),
            "(see Smith, 2001)");
  EXPECT_EQ(printOne("nature", {withoutEnclosure(between(cite("smith2001"), u"(", u")"))}),
            "<sup>(1)</sup>");
}

TEST(EngineOptions, StrippingOneGroupLeavesTheNextEnclosed) {
  const Printed printed =
      print("apa", {{withoutEnclosure(cite("smith2001"))}, {cite("jones1999")}});
  EXPECT_EQ(printed.groups[1], "(Jones & Lee, 1999)");
}

TEST(EngineOptions, SuperscriptIsSuppressedForTheGroupOnly) {
  const Printed printed =
      print("nature", {{onTheLine(cite("smith2001")), cite("jones1999")}, {cite("jones1999")}});
  EXPECT_EQ(printed.groups, (std::vector<std::string>{"1,2", "<sup>2</sup>"}));
}

TEST(EngineOptions, OptionsOfOneGroupCombine) {
  EXPECT_EQ(printOne("apa",
                     {withoutEnclosure(yearOnly(between(cite("smith2001", u"45"), u"cf. ", u"")))}),
            "cf. 2001, p. 45");
}
