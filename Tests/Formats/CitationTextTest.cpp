#include <Formats/CitationText.h>
#include <Tests/Support/AllStrings.h>
#include <Tests/Support/Effort.h>
#include <Tests/Support/ReferenceCitationText.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using formats::CitationText;
using formats::parseCitationText;

TEST(CitationText, ACompleteCitationYieldsEveryPiece) {
  const CitationText citation =
      parseCitationText(u"!%\\see \\Smith 2001\\, fig. 2\\#SMI2001@45-47");
  EXPECT_EQ(citation, (CitationText{.pageRange = u"45-47",
                                    .tag = u"SMI2001",
                                    .prependText = u"see ",
                                    .appendText = u", fig. 2",
                                    .searchText = u"Smith 2001",
                                    .excludeFromBody = true,
                                    .useYearOnly = true}));
}

TEST(CitationText, PlainTextIsSearchTextAndNothingElse) {
  EXPECT_EQ(parseCitationText(u"Smith 2001"), CitationText{.searchText = u"Smith 2001"});
}

TEST(CitationText, TheEmptyTextIsNoCitation) {
  EXPECT_EQ(parseCitationText(u""), CitationText{});
  EXPECT_EQ(parseCitationText(u" \t "), CitationText{});
}

TEST(CitationText, AtSignAtTheEndStaysInTheSearchText) {
  EXPECT_EQ(parseCitationText(u"Smith 2001@"), CitationText{.searchText = u"Smith 2001@"});
}

TEST(CitationText, PageRangeIsNotTrimmed) {
  EXPECT_EQ(parseCitationText(u"Smith@ 12 ").pageRange, u" 12 ");
}

TEST(CitationText, EverythingAfterTheFirstAtSignIsThePageRange) {
  EXPECT_EQ(parseCitationText(u"Smith@1@2"),
            (CitationText{.pageRange = u"1@2", .searchText = u"Smith"}));
  EXPECT_EQ(parseCitationText(u"Smith@@"),
            (CitationText{.pageRange = u"@", .searchText = u"Smith"}));
}

TEST(CitationText, ANumberSignBehindTheAtSignBelongsToThePageRange) {
  EXPECT_EQ(parseCitationText(u"Smith 2001@12#ABC"),
            (CitationText{.pageRange = u"12#ABC", .searchText = u"Smith 2001"}));
  EXPECT_EQ(parseCitationText(u"Smith 2001#ABC@12"),
            (CitationText{.pageRange = u"12", .tag = u"ABC", .searchText = u"Smith 2001"}));
}

TEST(CitationText, ATagAloneLeavesNoSearchText) {
  EXPECT_EQ(parseCitationText(u"#ABC"), CitationText{.tag = u"ABC"});
}

TEST(CitationText, NumberSignAtTheEndStaysInTheSearchText) {
  EXPECT_EQ(parseCitationText(u"Smith#"), CitationText{.searchText = u"Smith#"});
  EXPECT_EQ(parseCitationText(u"Smith#@1"),
            (CitationText{.pageRange = u"1", .searchText = u"Smith#"}));
}

TEST(CitationText, TagIsTrimmedAndMayBecomeEmpty) {
  EXPECT_EQ(parseCitationText(u"Smith#\t ABC ").tag, u"ABC");
  EXPECT_EQ(parseCitationText(u"Smith# "), (CitationText{.tag = u"", .searchText = u"Smith"}));
}

TEST(CitationText, EachFlagAloneIsRecognised) {
  EXPECT_EQ(parseCitationText(u"!S"), (CitationText{.searchText = u"S", .excludeFromBody = true}));
  EXPECT_EQ(parseCitationText(u"^S"),
            (CitationText{.searchText = u"S", .excludeFromBibliography = true}));
  EXPECT_EQ(parseCitationText(u"%S"), (CitationText{.searchText = u"S", .useYearOnly = true}));
  EXPECT_EQ(parseCitationText(u"_S"),
            (CitationText{.searchText = u"S", .suppressSuperscript = true}));
  EXPECT_EQ(parseCitationText(u"*S"), (CitationText{.searchText = u"S", .stripEnclosure = true}));
}

TEST(CitationText, AllFlagsInTheirOrderAreRecognised) {
  EXPECT_EQ(parseCitationText(u"!^%_*S"), (CitationText{.searchText = u"S",
                                                        .excludeFromBody = true,
                                                        .excludeFromBibliography = true,
                                                        .useYearOnly = true,
                                                        .suppressSuperscript = true,
                                                        .stripEnclosure = true}));
}

TEST(CitationText, FlagsOutOfOrderStayInTheSearchText) {
  EXPECT_EQ(parseCitationText(u"^!Smith"),
            (CitationText{.searchText = u"!Smith", .excludeFromBibliography = true}));
  EXPECT_EQ(parseCitationText(u"%!Smith"),
            (CitationText{.searchText = u"!Smith", .useYearOnly = true}));
}

TEST(CitationText, AFlagWrittenTwiceCountsOnce) {
  EXPECT_EQ(parseCitationText(u"!!Smith"),
            (CitationText{.searchText = u"!Smith", .excludeFromBody = true}));
}

TEST(CitationText, ABlankBeforeAFlagHidesIt) {
  EXPECT_EQ(parseCitationText(u" !Smith"), CitationText{.searchText = u"!Smith"});
}

TEST(CitationText, PrependTextKeepsItsBlanks) {
  EXPECT_EQ(parseCitationText(u"\\ see \\Smith"),
            (CitationText{.prependText = u" see ", .searchText = u"Smith"}));
}

TEST(CitationText, PrependTextNeedsTwoCharactersBehindIt) {
  EXPECT_EQ(parseCitationText(u"\\see\\X"), CitationText{.appendText = u"see"});
  EXPECT_EQ(parseCitationText(u"\\see\\"), CitationText{.appendText = u"see"});
  EXPECT_EQ(parseCitationText(u"\\see\\XY"),
            (CitationText{.prependText = u"see", .searchText = u"XY"}));
}

TEST(CitationText, AnEmptyPrependPairIsNone) {
  EXPECT_EQ(parseCitationText(u"\\\\Smith"), CitationText{.appendText = u"\\Smith"});
}

TEST(CitationText, ALeadingBackslashWithoutASecondBeginsAppendText) {
  EXPECT_EQ(parseCitationText(u"\\Smith"), CitationText{.appendText = u"Smith"});
}

TEST(CitationText, APairBehindTextIsNoPrependText) {
  EXPECT_EQ(parseCitationText(u"S\\see\\Smith"),
            (CitationText{.appendText = u"see", .searchText = u"S"}));
}

TEST(CitationText, AppendTextNeedsNoClosingBackslash) {
  EXPECT_EQ(parseCitationText(u"Smith\\, p. 5"),
            (CitationText{.appendText = u", p. 5", .searchText = u"Smith"}));
}

TEST(CitationText, AdjacentBackslashesDoNotCloseTheAppendText) {
  EXPECT_EQ(parseCitationText(u"Smith\\\\ p. 5"),
            (CitationText{.appendText = u"\\ p. 5", .searchText = u"Smith"}));
  EXPECT_EQ(parseCitationText(u"Smith\\\\ p\\ 5"),
            (CitationText{.appendText = u"\\ p\\ 5", .searchText = u"Smith"}));
}

TEST(CitationText, WhatFollowsTheClosingBackslashIsLost) {
  EXPECT_EQ(parseCitationText(u"Smith\\, p. 5\\ more"),
            (CitationText{.appendText = u", p. 5", .searchText = u"Smith"}));
}

TEST(CitationText, ABackslashAtTheEndStaysInTheSearchText) {
  EXPECT_EQ(parseCitationText(u"Smith\\"), CitationText{.searchText = u"Smith\\"});
}

TEST(CitationText, SearchTextIsTrimmed) {
  EXPECT_EQ(parseCitationText(u"\t Smith 2001 \u3000"), CitationText{.searchText = u"Smith 2001"});
}

TEST(CitationText, LineBreaksAreNotTrimmed) {
  EXPECT_EQ(parseCitationText(u"\nSmith\r\u2028\u2029\u0085\v\f").searchText,
            u"\nSmith\r\u2028\u2029\u0085\v\f");
}

TEST(CitationText, WhitespaceIsTheTabAndTheSpaceSeparators) {
  for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
    ASSERT_EQ(formats::isWhitespace(static_cast<char16_t>(unit)),
              reference::isWhitespace(static_cast<char16_t>(unit)))
        << static_cast<unsigned>(unit);
  }
}

TEST(CitationText, CombiningCharactersDoNotHideAMarker) {
  EXPECT_EQ(parseCitationText(u"Smith@\u0301"),
            (CitationText{.pageRange = u"\u0301", .searchText = u"Smith"}));
}

bool isSame(const CitationText &actual, const reference::CitationText &expected) {
  return actual.pageRange == expected.pageRange && actual.tag == expected.tag &&
         actual.prependText == expected.prependText && actual.appendText == expected.appendText &&
         actual.searchText == expected.searchText &&
         actual.excludeFromBody == expected.excludeFromBody &&
         actual.excludeFromBibliography == expected.excludeFromBibliography &&
         actual.useYearOnly == expected.useYearOnly &&
         actual.suppressSuperscript == expected.suppressSuperscript &&
         actual.stripEnclosure == expected.stripEnclosure;
}

void expectParsedAsTheReference(const std::u16string &text) {
  ASSERT_TRUE(isSame(parseCitationText(text), reference::parseCitationText(text)))
      << testing::PrintToString(text);
}

TEST(CitationText, EveryTextOfSixCharactersIsParsedAsByTheReference) {
  forEachString<char16_t>({u"@", u"#", u"\\", u"!", u"^", u"%", u"_", u"*", u"a", u" "},
                          test_support::effort(6, 5), expectParsedAsTheReference);
}

TEST(CitationText, EveryTextOfEightMarkersIsParsedAsByTheReference) {
  forEachString<char16_t>({u"@", u"#", u"\\", u"a", u" "}, test_support::effort(8, 7),
                          expectParsedAsTheReference);
}

}  // namespace
