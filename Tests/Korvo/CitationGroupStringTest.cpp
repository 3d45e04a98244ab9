#include <StandIns/Korvo/Adapter/CitationGroupString.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using korvo::adapter::citationStrings;
using testing::ElementsAre;

TEST(CitationGroupString, IsSplitAtEverySemicolon) {
  EXPECT_THAT(citationStrings(u"Smith 2001; Jones 1999"),
              ElementsAre(u"Smith 2001", u" Jones 1999"));
  EXPECT_THAT(citationStrings(u"Smith 2001"), ElementsAre(u"Smith 2001"));
  EXPECT_THAT(citationStrings(u"a;;b;"), ElementsAre(u"a", u"", u"b", u""));
  EXPECT_THAT(citationStrings(u";"), ElementsAre(u"", u""));
  EXPECT_THAT(citationStrings(u""), ElementsAre(u""));
}

TEST(CitationGroupString, LosesOnePairOfEnclosingBraces) {
  EXPECT_THAT(citationStrings(u"{A;B}"), ElementsAre(u"A", u"B"));
  EXPECT_THAT(citationStrings(u"{;Jones1999}"), ElementsAre(u"", u"Jones1999"));
  EXPECT_THAT(citationStrings(u"{{A}}"), ElementsAre(u"{A}"));
  EXPECT_THAT(citationStrings(u"{}"), ElementsAre(u""));
}

TEST(CitationGroupString, KeepsBracesThatAreNoPair) {
  EXPECT_THAT(citationStrings(u"{A"), ElementsAre(u"{A"));
  EXPECT_THAT(citationStrings(u"A}"), ElementsAre(u"A}"));
  EXPECT_THAT(citationStrings(u"{"), ElementsAre(u"{"));
  EXPECT_THAT(citationStrings(u"}A{"), ElementsAre(u"}A{"));
}

TEST(CitationGroupString, LosesWhiteSpaceAroundTheBracesOnly) {
  EXPECT_THAT(citationStrings(u" \t\n{ A ; B }\r\n\u00A0"), ElementsAre(u" A ", u" B "));
  EXPECT_THAT(citationStrings(u" \u2029 "), ElementsAre(u""));
}
