#include <StandIns/Mellel/RTF/DocumentRewriting.h>
#include <Tests/Support/ReadDocument.h>

#include <gtest/gtest.h>

#include <string>

namespace mellel::rtf {
namespace {

using test_support::documentWith;
using test_support::textOf;

BibliographyParagraphs twoEntries() {
  return *readBibliography("{\\rtf1\\li720\\fi-720 A\\par B\\par}");
}

// The body after each citation has been given the same text.
std::string formattedBody(std::string_view body, std::string_view pidgin,
                          const BibliographyParagraphs &bibliography = {}) {
  const std::string rtf = documentWith(body);
  const auto document = readDocumentText(rtf);
  const std::vector<std::optional<RichText>> texts(document->citations.size(),
                                                   *readPidginRTF(pidgin));
  const std::string result = formattedDocument(rtf, *document, texts, bibliography);
  EXPECT_TRUE(textOf(result)) << result;
  const std::string header = documentWith("").substr(0, documentWith("").size() - 1);
  EXPECT_EQ(result.substr(0, header.size()), header);
  return result.substr(header.size(), result.size() - header.size() - 1);
}

TEST(DocumentRewriting, TextTakesThePlaceOfTheCitation) {
  EXPECT_EQ(formattedBody("a \\{Smith\\} b", "(S {\\i x})"), "a {(S {\\i x})} b");
}

TEST(DocumentRewriting, SentencesEndWithOneStop) {
  EXPECT_EQ(formattedBody("a \\{Smith\\}. B", "See S 7."), "a {See S 7}. B");
  EXPECT_EQ(formattedBody("a{\\footnote \\{Smith\\}.} B", "See {\\i S.}"),
            "a{\\footnote {See {\\i S}}.} B");
  EXPECT_EQ(formattedBody("a \\{Smith\\}, b", "S et al."), "a {S et al.}, b");
  EXPECT_EQ(formattedBody("a \\{Smith\\}", "S."), "a {S.}");
  EXPECT_EQ(formattedBody("a \\{Smith\\}.", "."), "a {}.");
}

TEST(DocumentRewriting, TextTakesTheLooksThatTheWholeCitationHad) {
  EXPECT_EQ(formattedBody("a{\\b\\{Smith 2001\\}} b", "S"), "a{\\b{S}} b");
}

TEST(DocumentRewriting, TextDoesNotTakeLooksThatEndedInTheCitation) {
  EXPECT_EQ(formattedBody("a{\\b\\{Smith} 2001\\} b", "S"), "a{\\b{\\b0 S}} b");
  EXPECT_EQ(formattedBody("{\\i Nature \\{}Smith\\} b", "S {\\i x}"),
            "{\\i Nature {\\i0 S {\\i x}}} b");
  EXPECT_EQ(
      formattedBody("{\\b\\i\\ul\\scaps\\super\\{Smith\\i0 2001\\b0\\ulnone\\}} b", "\\uc0\\u233 "),
      "{\\b\\i\\ul\\scaps\\super{\\ulnone\\i0\\b0\\uc0 \\u233 }\\i0 \\b0\\ulnone } b");
}

TEST(DocumentRewriting, FormattingInsideTheCitationStaysInForceAfterIt) {
  EXPECT_EQ(formattedBody("\\{Sm\\i ith\\} b", "S"), "{S}\\i  b");
  EXPECT_EQ(formattedBody("\\{Sm{\\i it}h\\}b", "S"), "{S}{\\i }b");
}

TEST(DocumentRewriting, ControlWordThatLosesItsEndGetsABlank) {
  EXPECT_EQ(formattedBody("\\{Sm\\b\\'69th\\}2001", "S"), "{S}\\b 2001");
  EXPECT_EQ(formattedBody("\\{Sm\\b\\'69th\\} x", "S"), "{S}\\b  x");
}

TEST(DocumentRewriting, LineBreaksOfTheSourceStay) {
  EXPECT_EQ(formattedBody("{\\loch\n\\{Smi}{\\loch\\i\\loch\nth\\}}\r\n", "S"),
            "{\\loch\n{S}}{\\loch\\i\\loch\n}\r\n");
}

TEST(DocumentRewriting, FallbacksOfTheClosingBraceGoWithIt) {
  EXPECT_EQ(formattedBody("\\u123?Smith\\u125?x", "S"), "{S}x");
  EXPECT_EQ(formattedBody("{\\uc3\\u123 abcSmith\\u125 abcx}", "S"), "{\\uc3{S}x}");
}

TEST(DocumentRewriting, FirstByteOfACharacterAfterTheCitationStays) {
  const std::string rtf = "{\\rtf1\\ansi\\ansicpg932 \\{a\\}\\'82\\'a0}";
  const auto document = readDocumentText(rtf);
  EXPECT_EQ(formattedDocument(rtf, *document, {RichText{{"X"}}}, {}),
            "{\\rtf1\\ansi\\ansicpg932 {X}\\'82\\'a0}");
}

TEST(DocumentRewriting, NulAfterTheCitationKeepsItsFallback) {
  EXPECT_EQ(formattedBody("\\{a\\}\\u0 ?b", "X"), "{X}\\u0 ?b");
}

TEST(DocumentRewriting, EmptyTextRemovesTheCitation) {
  EXPECT_EQ(formattedBody("a\\i\\{!Smith\\}b", ""), "a\\i{}b");
}

TEST(DocumentRewriting, CitationsWithoutATextStayByteForByte) {
  const std::string rtf = documentWith("a \\{Sm{\\i ith}\\} \\'7bJones\\'7d b");
  const auto document = readDocumentText(rtf);
  EXPECT_EQ(formattedDocument(rtf, *document, {std::nullopt, std::nullopt}, {}), rtf);
}

TEST(DocumentRewriting, FootnoteInsideACitationStays) {
  EXPECT_EQ(formattedBody("\\{Smith{\\footnote \\{Li\\}} 2001\\}", "S"), "{S}{\\footnote {S}}");
}

TEST(DocumentRewriting, RichTextMayHoldBraces) {
  EXPECT_EQ(formattedBody("\\{a\\}", "x\\'7b y\\'7d "), "{x\\{y\\}}");
}

TEST(DocumentRewriting, BibliographyReplacesItsParagraph) {
  EXPECT_EQ(formattedBody("a\\par\\pard{\\b\\{bibliography}\\} \\par b", "", twoEntries()),
            "a\\par\\pard{\\b\n"
            "{\\li720\\lin720\\fi-720\\sb0\\sa0\\b0\\i0\\scaps0\\ulnone\\nosupersub\\uc0 A\\par}\n"
            "{\\li720\\lin720\\fi-720\\sb0\\sa0\\b0\\i0\\scaps0\\ulnone\\nosupersub\\uc0 B\\par}\n"
            "}b");
}

TEST(DocumentRewriting, BibliographyInATableCellLeavesTheCellItsEnd) {
  const std::string body =
      formattedBody("\\trowd\\cellx100\\intbl\\{bibliography\\}\\cell\\row ", "", twoEntries());
  EXPECT_EQ(body.substr(body.size() - 12), "}\n\\cell\\row ");
}

TEST(DocumentRewriting, HexadecimalCharacterWithoutDigitsFindsNoneInWhatFollows) {
  EXPECT_EQ(formattedBody("\\{A\\'xB\\}41", "S"), "{S}\\'{}41");
  EXPECT_EQ(formattedBody("\\{A\\'xB\\}", "S"), "{S}\\'{}");
  EXPECT_EQ(formattedBody("\\{A\\'{\\b xB}\\}41", "S"), "{S}\\'{\\b }41");
}

TEST(DocumentRewriting, BinaryDataOfNoLengthDoesNotBecomeAnotherWord) {
  EXPECT_EQ(formattedBody("\\{A\\bin;B\\}an", "S"), "{S}\\bin an");
  EXPECT_EQ(formattedBody("\\{A\\bin0;B\\}5x", "S"), "{S}\\bin0 5x");
  EXPECT_EQ(formattedBody("\\{A\\bin0 ;B\\}5x", "S"), "{S}\\bin0 5x");
  EXPECT_EQ(formattedBody("\\{A\\bin1{;B\\}5x", "S"), "{S}\\bin1{5x");
}

TEST(DocumentRewriting, ParagraphsEndThatEndedAControlWordLeavesABlank) {
  EXPECT_EQ(textOf(documentWith(formattedBody("\\{bibliography\\}\\i\\par b", "", twoEntries()))),
            "A¶B¶b");
}

TEST(DocumentRewriting, BibliographyGoesToTheEndOtherwise) {
  EXPECT_EQ(formattedBody("\\pard\\f0\\fs20 text", "", twoEntries()),
            "\\pard\\f0\\fs20 text\\par\n"
            "{\\pard\\plain\\ql\\li720\\lin720\\fi-720\\sb0\\sa0\\f0\\fs20\\uc0 A\\par}\n"
            "{\\pard\\plain\\ql\\li720\\lin720\\fi-720\\sb0\\sa0\\f0\\fs20\\uc0 B\\par}\n");
}

TEST(DocumentRewriting, BibliographyAtTheEndComesBeforeTrailingDestinations) {
  EXPECT_EQ(
      textOf(documentWith(formattedBody("a{\\i b\\par}{\\*\\themedata 00}", "", twoEntries()))),
      "ab¶A¶B¶");
}

TEST(DocumentRewriting, EmptyBibliographyLeavesItsPlace) {
  EXPECT_EQ(formattedBody("\\{bibliography\\}\\par ", ""), "\\{bibliography\\}\\par ");
}

TEST(DocumentRewriting, CitationIsInsertedWhereItIsAsked) {
  EXPECT_EQ(documentWithCitation("{\\rtf1 ab}", 8, "{Smith#Ö}"),
            "{\\rtf1 a{\\uc0 \\{Smith#\\u214 \\}}b}");
  EXPECT_EQ(documentWithCitation("{\\rtf1 ab}", 8, "{S}"), "{\\rtf1 a{\\{S\\}}b}");
}

}  // namespace
}  // namespace mellel::rtf
