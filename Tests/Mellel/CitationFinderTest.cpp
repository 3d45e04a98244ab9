#include <StandIns/Mellel/RTF/CitationFinder.h>
#include <Tests/Support/ReadDocument.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace mellel::rtf {
namespace {

using test_support::citationsIn;
using test_support::documentWith;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> citationsInBody(std::string_view body) {
  return citationsIn(documentWith(body));
}

TEST(CitationFinder, CitationIsTheTextBetweenBraces) {
  EXPECT_THAT(citationsInBody("See \\{Smith 2001#SMI2001@45; Jones 1999\\} and \\{Li 2000\\}."),
              ElementsAre("Smith 2001#SMI2001@45; Jones 1999", "Li 2000"));
}

TEST(CitationFinder, FormattingMayBreakACitationUp) {
  EXPECT_THAT(citationsInBody("\\{Smith{\\i  20}{\\b\\cf2\n01}#S\\lang1033 M\\}"),
              ElementsAre("Smith 2001#SM"));
}

TEST(CitationFinder, BracesMayBeBytesOrNumbers) {
  EXPECT_THAT(citationsInBody("\\'7bSmith\\'7d \\u123?Jones\\u125?"),
              ElementsAre("Smith", "Jones"));
}

TEST(CitationFinder, LibreOfficeWritesFallbacksAndRuns) {
  EXPECT_THAT(citationsInBody("{\\loch\n caf\\u233\\'e9 \\{M\\u252\\'fcller \\u8220\\'93x\\u8221"
                              "\\'94 }{\\dbch\n\\u26085\\'3f\\u26412\\'3f \\u8211\\'96 }{\\loch\n"
                              "2002\\}.}\n\\par "),
              ElementsAre("Müller “x” 日本 – 2002"));
}

TEST(CitationFinder, TextEditWritesNumbersWithoutFallbackAndHardLineBreaks) {
  EXPECT_THAT(
      citationsIn("{\\rtf1\\ansi\\ansicpg1252\\cocoartf2639\n\\cocoatextscaling0"
                  "{\\fonttbl\\f0\\fswiss\\fcharset0 Helvetica;\\f1\\fswiss Helvetica-Bold;}\n"
                  "{\\colortbl;\\red255\\green255\\blue255;}\n\\pard\\tx566\\pardirnatural\n\n"
                  "\\f0\\fs24 \\cf0 It\\'92s \\{Ko\\uc0\\u322 akowski 1968#K\\\n"
                  "\\{Ho\n\\f1\\b ff\n\\f0\\b0 man\\'97x 1990\\}\\\n}"),
      ElementsAre("Hoffman—x 1990"));
}

TEST(CitationFinder, WordWritesSpellingMarksAndBookmarksIntoCitations) {
  EXPECT_THAT(
      citationsInBody(
          "{\\rtlch\\fcs1 \\af0 \\ltrch\\fcs0 \\insrsid1 \\{\\hich\\af0 Smi}{\\*\\bkmkstart "
          "x}{\\lang1031\\noproof th}{\\*\\bkmkend x} 2001{\\field{\\*\\fldinst {a}}"
          "{\\fldrslt {@4}}}\\}"),
      ElementsAre("Smith 2001@4"));
}

TEST(CitationFinder, LayoutCharactersAreToldAsWhatTheyMean) {
  EXPECT_THAT(citationsInBody("\\{A\\-B\\~C\\_D\\tab E\\line F\\u8239?G\\}"),
              ElementsAre("AB C-D E F G"));
}

TEST(CitationFinder, QuotesAndDashesAreCharacters) {
  EXPECT_THAT(citationsInBody("\\{O\\rquote Hara \\endash  \\ldblquote x\\rdblquote\\}"),
              ElementsAre("O’Hara – “x”"));
}

TEST(CitationFinder, CitationNeverReachesAcrossAParagraph) {
  for (const std::string end : {"\\par ", "\\cell ", "\\row ", "\\sect ", "\\page ", "\\\n"}) {
    EXPECT_THAT(citationsInBody("\\{Smith" + end + "2001\\} \\{Li\\}"), ElementsAre("Li")) << end;
  }
}

TEST(CitationFinder, CitationNeverReachesIntoAFootnoteOrOutOfIt) {
  EXPECT_THAT(citationsInBody("\\{Smith{\\footnote 2001\\}} \\{Li\\}"), ElementsAre("Li"));
  EXPECT_THAT(citationsInBody("a{\\footnote \\{Smith} 2001\\} \\{Li\\}"), ElementsAre("Li"));
}

TEST(CitationFinder, FootnoteInsideACitationInterruptsIt) {
  EXPECT_THAT(citationsInBody("\\{Smith{\\super\\chftn{\\*\\footnote see \\{Li 2000\\}}} 2001\\}"),
              ElementsAre("Smith 2001", "Li 2000"));
}

TEST(CitationFinder, CitationsStandInFootnotesTablesHeadersAndBoxes) {
  EXPECT_THAT(citationsInBody("{\\header\\{H\\}}\\trowd\\cellx100 \\{T\\}\\cell\\row "
                              "{\\footnote\\{F\\}}{\\shp{\\*\\shpinst{\\shptxt\\{B\\}}}}"),
              ElementsAre("H", "T", "F", "B"));
}

TEST(CitationFinder, UnmatchedBracesAreLeftAlone) {
  EXPECT_THAT(citationsInBody("a\\} b \\{c \\{d\\} e\\} f\\{"), ElementsAre("d"));
}

TEST(CitationFinder, EmptyBracesAreLeftAlone) {
  EXPECT_THAT(citationsInBody("\\{\\}\\{ \\~\\tab\\}\\{\\-\\}"), IsEmpty());
}

TEST(CitationFinder, BracesInHeaderTablesAreNoCitations) {
  EXPECT_THAT(citationsIn("{\\rtf1{\\info{\\title \\{Smith\\}}}{\\*\\x \\{Jones\\}}a}"), IsEmpty());
}

TEST(CitationFinder, CitationInTextForOldReadersIsFoundOnce) {
  EXPECT_THAT(citationsInBody("{\\upr{\\{old\\}}{\\*\\ud{\\{new\\}}}}"), ElementsAre("new"));
}

TEST(CitationFinder, DeletedTextIsNoPartOfACitation) {
  EXPECT_THAT(citationsInBody("\\{Smith {\\deleted 2000}{\\revised 2001}\\}"),
              ElementsAre("Smith 2001"));
}

TEST(CitationFinder, LongTextBetweenBracesIsNoCitation) {
  EXPECT_THAT(citationsInBody("\\{" + std::string(70'000, 'a') + "\\} \\{b\\}"), ElementsAre("b"));
}

TEST(CitationFinder, ParagraphWithTheWordAloneIsTheBibliographysPlace) {
  for (const std::string body : {"\\{bibliography\\}\\par ", "\\{Bibli{\\i ography}\\}\\par ",
                                 " \\{ BIBLIOGRAPHY \\} \\par ", "a\\par\\{bibliography\\}"}) {
    const auto text = readDocumentText(documentWith(body));
    ASSERT_TRUE(text) << body;
    EXPECT_TRUE(text->bibliographyPlace) << body;
    EXPECT_THAT(text->citations, IsEmpty()) << body;
  }
}

TEST(CitationFinder, TheWordBesideOtherTextIsACitation) {
  for (const std::string body :
       {"see \\{bibliography\\}\\par ", "\\{bibliography\\} below\\par ",
        "\\{bibliography\\}\\{bibliography\\}\\par ", "\\{ x \\{bibliography\\}\\par ",
        "\\{bibliography\\} \\{x\\par "}) {
    const auto text = readDocumentText(documentWith(body));
    ASSERT_TRUE(text) << body;
    EXPECT_FALSE(text->bibliographyPlace) << body;
    EXPECT_FALSE(text->citations.empty()) << body;
  }
}

TEST(CitationFinder, OfSeveralPlacesTheFirstCounts) {
  const std::string document = documentWith("\\{bibliography\\}\\par\\{bibliography\\}\\par ");
  const auto text = readDocumentText(document);
  ASSERT_TRUE(text && text->bibliographyPlace);
  EXPECT_EQ(text->bibliographyPlace->spans.front().span.begin, document.find("\\{"));
}

TEST(CitationFinder, BodyFormatIsTheOneOfMostOfTheText) {
  const auto text = readDocumentText(
      documentWith("\\pard\\plain\\s1\\f2\\fs48 Head\\par\\pard\\plain\\s28\\f3\\fs22 Much more "
                   "of this text\\par{\\footnote\\fs4 and yet more and more and more text}"));
  ASSERT_TRUE(text);
  EXPECT_EQ(text->bodyFormat.style, 28);
  EXPECT_EQ(text->bodyFormat.font, 3);
  EXPECT_EQ(text->bodyFormat.size, 22);
}

TEST(CitationFinder, MainTextEndsBeforeTrailingDestinations) {
  const std::string document = documentWith("a{\\i b\\par}{\\*\\themedata 00}");
  const auto text = readDocumentText(document);
  ASSERT_TRUE(text);
  EXPECT_EQ(document.substr(text->endOfMainText), "{\\*\\themedata 00}}");
  EXPECT_FALSE(text->lastParagraphIsOpen);
}

TEST(CitationFinder, TheEndOfTheMainTextIsNeverWhereTheDocumentHidesAllOfItsRest) {
  const std::string document = documentWith("a\\par\\pict5 hidden\\par");
  const auto text = readDocumentText(document);
  EXPECT_EQ(document.substr(text->endOfMainText), "\\pict5 hidden\\par}");
}

TEST(CitationFinder, MainTextEndsBehindTheFallbackOfItsLastCharacter) {
  for (const std::string last : {"\\u233?", "\\u233\\'e9", "\\uc3\\u233 a\\'e9\\bin1 x"}) {
    const std::string document = documentWith("a" + last + "{\\*\\x}");
    const auto text = readDocumentText(document);
    EXPECT_EQ(document.substr(text->endOfMainText), "{\\*\\x}}") << last;
  }
}

TEST(CitationFinder, ParagraphWithoutItsEndIsOpen) {
  EXPECT_TRUE(readDocumentText(documentWith("a\\par b"))->lastParagraphIsOpen);
  EXPECT_TRUE(readDocumentText(documentWith("a\\par{\\pict 00}"))->lastParagraphIsOpen);
  EXPECT_FALSE(readDocumentText(documentWith("a\\par{\\footnote b}"))->lastParagraphIsOpen);
}

TEST(FindEndOfText, FindsTextAcrossFormattingAndGivesThePlaceAfterIt) {
  const std::string document = documentWith("As sh{\\i own} bel\\u243\\'f3w here");
  EXPECT_EQ(findEndOfText(document, "shown"), document.find("} bel"));
  EXPECT_EQ(findEndOfText(document, "sho"), document.find("wn} bel"));
  EXPECT_EQ(findEndOfText(document, "beló"), document.find("w here"));
}

TEST(FindEndOfText, FindsTheFirstOfSeveralPlaces) {
  const std::string document = documentWith("one two\\par two");
  EXPECT_EQ(findEndOfText(document, "two"), document.find("\\par"));
}

TEST(FindEndOfText, LooksIntoFootnotesAndNotAcrossThem) {
  const std::string document = documentWith("a{\\footnote note}b\\par c");
  EXPECT_EQ(findEndOfText(document, "not"), document.find("e}b"));
  EXPECT_EQ(findEndOfText(document, "ab"), document.find("\\par"));
  EXPECT_EQ(findEndOfText(document, "bc"), std::nullopt);
}

TEST(FindEndOfText, TextWithoutCharactersStandsNowhere) {
  for (const std::string document : {"{\\rtf1}", "{\\rtf1\\par a}", "{\\rtf1 a\\par}"}) {
    EXPECT_EQ(findEndOfText(document, ""), std::nullopt) << document;
    // An optional hyphen guides the layout and is no character.
    EXPECT_EQ(findEndOfText(document, "\xC2\xAD"), std::nullopt) << document;
  }
}

TEST(FindEndOfText, RefusesABrokenDocument) { EXPECT_FALSE(findEndOfText("x", "x")); }

// As AbiWord writes the items of a list.
TEST(CitationFinder, CitationsInTextsForProgramsWithoutListsAreCounted) {
  const auto document = readDocumentText(
      "{\\rtf1{\\listtext\\{Smith 2001\\} and \\'7bJones#x\\'7d \\{1\\}\\tab}Item\\par\\{A 1\\}}");
  ASSERT_TRUE(document);
  EXPECT_EQ(document->citationsInListTexts, 1U);
  ASSERT_EQ(document->citations.size(), 1U);
  EXPECT_EQ(document->citations[0].text, "A 1");
  EXPECT_EQ(readDocumentText("{\\rtf1{\\info{\\title \\{A 1\\}}}x}")->citationsInListTexts, 0U);
  EXPECT_EQ(readDocumentText("{\\rtf1{\\listtext\\{A 1}{\\listtext 2\\}}x}")->citationsInListTexts,
            0U);
}

}  // namespace
}  // namespace mellel::rtf
