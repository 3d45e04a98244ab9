#include <StandIns/Mellel/RTF/TextReader.h>
#include <Tests/Support/ReadDocument.h>

#include <gtest/gtest.h>

#include <string>

namespace mellel::rtf {
namespace {

using test_support::documentWith;
using test_support::errorOf;
using test_support::textOf;
using namespace std::string_view_literals;

std::string textOfBody(std::string_view body) {
  return textOf(documentWith(body)).value_or("(refused)");
}

TEST(TextReader, HeaderTablesAreNoText) {
  EXPECT_EQ(textOf("{\\rtf1{\\fonttbl\\f0 Times;}{\\colortbl;\\red0;}{\\stylesheet{\\s0 Normal;}}"
                   "{\\info{\\title A}}{\\*\\generator Riched20;}text}"),
            "text");
}

TEST(TextReader, PicturesObjectsAndListNumbersAreNoText) {
  EXPECT_EQ(textOfBody("a{\\pict 0102}b{\\*\\shppict{\\pict 00}}c{\\listtext 1.\\tab}d"
                       "{\\pntext 2.}e"),
            "abcde");
}

TEST(TextReader, BinaryDataIsNoText) {
  EXPECT_EQ(textOfBody("a{\\pict\\bin5 }}\\{x}b\\bin2 }}"), "ab");
}

TEST(TextReader, UnknownIgnorableDestinationsAreNoText) {
  EXPECT_EQ(textOfBody("a{\\*\\nobodyknows b{\\i c}}d"), "ad");
}

TEST(TextReader, UnknownDestinationsWithoutTheMarkAreText) {
  EXPECT_EQ(textOfBody("a{\\nobodyknows b}d"), "abd");
}

TEST(TextReader, FieldResultsAreTextAndInstructionsAreNot) {
  EXPECT_EQ(textOfBody("{\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt shown}}"), "shown");
  EXPECT_EQ(textOfBody("{\\field{\\fldinst PAGE}{\\fldrslt 7}}"), "7");
}

TEST(TextReader, FootnotesAreTextsOfTheirOwnWithOrWithoutTheIgnorableMark) {
  EXPECT_EQ(textOfBody("a{\\footnote b}c"), "a‹b›c");
  EXPECT_EQ(textOfBody("a{\\super\\chftn{\\*\\footnote\\chftn b}}c"), "a‹b›c");
}

TEST(TextReader, HeadersAndFootersAreTextsOfTheirOwn) {
  EXPECT_EQ(textOfBody("{\\headerr h\\par}a{\\footerf f}"), "‹h¶›a‹f›");
}

TEST(TextReader, TextBoxesAreTextButTheirFallbackIsNot) {
  EXPECT_EQ(textOfBody("a{\\shp{\\*\\shpinst\\shpleft1{\\sp{\\sn x}{\\sv y}}{\\shptxt box\\par}}"
                       "{\\shprslt{\\*\\do{\\dptxbxtext box\\par}}}}b"),
            "a‹box¶›b");
}

TEST(TextReader, HiddenDestinationInsideAHiddenOneStaysHidden) {
  EXPECT_EQ(textOf("{\\rtf1{\\info{\\footnote x}}a}"), "a");
}

TEST(TextReader, OfTheTwoTextsForOldAndNewReadersTheNewOneCounts) {
  EXPECT_EQ(textOfBody("a{\\upr{old}{\\*\\ud new}}b"), "anewb");
  EXPECT_EQ(textOf("{\\rtf1{\\info{\\upr{old}{\\*\\ud new}}}a}"), "a");
}

TEST(TextReader, TextDeletedByATrackedChangeIsNoText) {
  EXPECT_EQ(textOfBody("a{\\deleted b}c\\deleted d\\deleted0 e\\deleted f\\plain g"), "aceg");
}

TEST(TextReader, CommentsAreNoText) {
  EXPECT_EQ(textOfBody("a{\\*\\atnid x}{\\*\\annotation{\\*\\atnref 1}comment}b"), "ab");
}

TEST(TextReader, UnicodeCharactersHaveAsManyFallbackCharactersAsTold) {
  EXPECT_EQ(textOfBody("\\u233\\'e9x\\uc0\\u233 x\\uc2\\u233 abx\\uc3\\u233 a\\'62\\~x"),
            "éxéxéxéx");
}

TEST(TextReader, FallbackCountIsThatOfItsGroup) {
  EXPECT_EQ(textOfBody("{\\uc0\\u233 }\\u233 ?x"), "ééx");
}

TEST(TextReader, FallbackEndsWithItsGroup) { EXPECT_EQ(textOfBody("{\\uc5\\u233 a}b"), "éb"); }

TEST(TextReader, EscapedBraceCanBeAFallback) { EXPECT_EQ(textOfBody("\\u233\\{x"), "éx"); }

TEST(TextReader, ControlWordThatIsNoCharacterEndsAFallback) {
  EXPECT_EQ(textOfBody("\\u233\\b x\\u233\\par y"), "éxé¶y");
}

TEST(TextReader, NegativeNumbersAndSurrogatePairsAreCharacters) {
  EXPECT_EQ(textOfBody("\\u-3 ?\\u-10179 ?\\u-8704 ?"), "\xEF\xBF\xBD😀");
  EXPECT_EQ(textOfBody("\\uc0\\u-10179 \\u-8704 \\u128512 "), "😀😀");
}

TEST(TextReader, FirstSurrogateAloneIsNothingAndSecondAloneTheReplacementCharacter) {
  EXPECT_EQ(textOfBody("\\uc0\\u-10179 x\\u-10179\\'62\\u-8704 y"), "xb\xEF\xBF\xBDy");
}

TEST(TextReader, NulCharactersAreNothing) { EXPECT_EQ(textOfBody("a\\u0 ?b\\'00c\0d"sv), "abcd"); }

TEST(TextReader, BytesAreReadInTheCodePageOfTheFont) {
  EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fcharset0 A;}"
                   "{\\f1\\fcharset204 B;}{\\f2\\fcharset1 C;}{\\f3\\cpg1250 D;}}"
                   "\\'e6{\\f1 \\'e6}\\'e6\\f2\\'e6\\f3\\'e8\\plain\\'e6}"),
            "æжææčæ");
}

TEST(TextReader, BytesAreReadInTheCodePageOfTheHeader) {
  EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg1251 \\'e6\xE6}"), "жж");
  EXPECT_EQ(textOf("{\\rtf1\\mac \\'8e}"), "é");
  EXPECT_EQ(textOf("{\\rtf1\\pc \\'82}"), "é");
}

TEST(TextReader, FontTableWithoutInnerGroupsIsUnderstood) {
  EXPECT_EQ(textOf("{\\rtf1\\ansi{\\fonttbl\\f0\\fcharset0 A;\\f1\\fcharset204 B;}\\f1\\'e6}"),
            "ж");
}

TEST(TextReader, SecondByteOfACharacterIsNoBrace) {
  EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg932 \\'81\\'7b\\'81\\{\\'83\\'5c}"), "＋{ソ");
  EXPECT_EQ(textOf("{\\rtf1\\ansi\\ansicpg932 \\'82\xA0\x82\\'a0\x82\xA0}"), "あああ");
}

TEST(TextReader, SymbolsAndWordsThatAreCharacters) {
  EXPECT_EQ(textOfBody("a\\~b\\_c\\-d\\tab e\\line f\\emdash\\endash\\lquote\\rquote\\ldblquote"
                       "\\rdblquote\\bullet\\\\\\{\\}"),
            "a\u00A0b\u2011c\u00ADd\te\u2028f—–‘’“”•\\{}");
}

TEST(TextReader, ParagraphsEndWithWordsAndEscapedLineBreaks) {
  EXPECT_EQ(textOfBody("a\\par b\\\nc\\cell d\\row e\\sect f\\page g"), "a¶b¶c¶d¶e¶f¶g");
}

TEST(TextReader, LineBreaksOfTheSourceAreNothing) { EXPECT_EQ(textOfBody("a\r\nb\nc"), "abc"); }

TEST(TextReader, DocumentsThatAreNoneAreRefused) {
  for (const std::string bytes : {"", "{", "{\\rt", "plain text", "\x89PNG\r\n\x1A\n", "\\rtf1",
                                  "{{\\rtf1}}", "%PDF-1.7", "{\\rtfd1 x}"}) {
    EXPECT_EQ(errorOf(bytes), "it is not an RTF document") << bytes;
  }
}

TEST(TextReader, DocumentsCutShortAreRefused) {
  EXPECT_EQ(errorOf("{\\rtf1 abc"), "it is cut short: 1 group is still open at its end");
  EXPECT_EQ(errorOf("{\\rtf1 {{abc}"), "it is cut short: 2 groups are still open at its end");
  EXPECT_EQ(errorOf("{\\rtf1 abc\\"), "it is cut short: 1 group is still open at its end");
  EXPECT_EQ(errorOf("{\\rtf1 abc\\'e"), "it is cut short: 1 group is still open at its end");
  EXPECT_EQ(errorOf("{\\rtf1 \\bin99 abc}"), "it is cut short: 1 group is still open at its end");
}

TEST(TextReader, EveryTruncationOfADocumentIsRefused) {
  const std::string document = documentWith("a{\\b\\{Smith\\}}{\\pict\\bin3 abc}\\u233\\'e9\\par ");
  for (std::size_t length = 0; length < document.size(); ++length) {
    EXPECT_NE(errorOf(document.substr(0, length)), "") << length;
  }
  EXPECT_EQ(errorOf(document), "");
}

TEST(TextReader, BracesTooManyAreRefused) {
  EXPECT_EQ(errorOf("{\\rtf1 a}}"), "it goes on after its closing brace, at byte 9");
  EXPECT_EQ(errorOf("{\\rtf1 a}\n{\\rtf1 b}"), "it goes on after its closing brace, at byte 10");
}

TEST(TextReader, PaddingAfterTheDocumentIsAllowed) {
  EXPECT_EQ(textOf("{\\rtf1 a}\r\n\0\x1A "sv), "a");
}

TEST(TextReader, DeepGroupsAreReadAndTooDeepOnesRefused) {
  const auto nested = [](std::size_t depth) {
    return "{\\rtf1 " + std::string(depth, '{') + "x" + std::string(depth, '}') + "}";
  };
  EXPECT_EQ(textOf(nested(9'000)), "x");
  EXPECT_NE(errorOf(nested(20'000)).find("nested more than 10000 deep"), std::string::npos);
  EXPECT_NE(errorOf("{\\rtf1 " + std::string(1'000'000, '{')), "");
}

TEST(TextReader, AnErrorStays) {
  TextReader reader("nothing");
  EXPECT_EQ(reader.next().kind, TextEventKind::failure);
  EXPECT_EQ(reader.next().kind, TextEventKind::failure);
}

TEST(TextReader, TheEndStays) {
  TextReader reader("{\\rtf1}");
  EXPECT_EQ(reader.next().kind, TextEventKind::documentEnd);
  EXPECT_EQ(reader.next().kind, TextEventKind::documentEnd);
}

}  // namespace
}  // namespace mellel::rtf
