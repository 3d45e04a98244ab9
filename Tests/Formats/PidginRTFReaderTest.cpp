#include "Payloads.h"

#include <Formats/PidginRTFReader.h>
#include <Tests/Support/AllStrings.h>
#include <Tests/Support/Effort.h>
#include <Tests/Support/ReferencePidginRTF.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using formats::textOfPidginRTF;

TEST(PidginRTFReader, GroupsAndTheirControlWordsAreDropped) {
  EXPECT_EQ(textOfPidginRTF(u"{\\b bold} and {\\i italic}"), u"bold and italic");
}

TEST(PidginRTFReader, AQuoteWordIsAnApostropheAndTheBlankBehindItStays) {
  EXPECT_EQ(textOfPidginRTF(u"it\\rquote s"), u"it' s");
  EXPECT_EQ(textOfPidginRTF(u"it\\rquotes"), u"it's");
}

TEST(PidginRTFReader, AWordThatBeginsLikeAQuoteWordIsDropped) {
  for (const std::u16string_view word : {u"r", u"rquot", u"rQuote", u"rca", u"ra\\uc"}) {
    EXPECT_EQ(textOfPidginRTF(u"it\\" + std::u16string(word) + u" s"), u"its");
    EXPECT_EQ(textOfPidginRTF(u"it\\" + std::u16string(word)), u"it");
  }
}

TEST(PidginRTFReader, AQuoteWordInAGroupIsAnApostrophe) {
  EXPECT_EQ(textOfPidginRTF(u"{\\rquote}"), u"'");
  EXPECT_EQ(textOfPidginRTF(u"{\\b\\rquote\\rquote x}"), u"''x");
  EXPECT_EQ(textOfPidginRTF(u"{\\rquotes}"), u"");
}

TEST(PidginRTFReader, AnEscapedBackslashIsABackslash) {
  EXPECT_EQ(textOfPidginRTF(u"a\\\\b"), u"a\\b");
}

TEST(PidginRTFReader, NumericEscapesAreDroppedWithTheirBlank) {
  EXPECT_EQ(textOfPidginRTF(u"caf\\uc0\\u233 "), u"caf");
}

TEST(PidginRTFReader, TheCountOfFallbackCharactersIsOneDigitAndTextFollowsIt) {
  EXPECT_EQ(textOfPidginRTF(u"\\uc1x y"), u"x y");
  EXPECT_EQ(textOfPidginRTF(u"a\\uc12 b"), u"a2 b");
}

TEST(PidginRTFReader, HexEscapesAreDroppedWithTheirBlank) {
  EXPECT_EQ(textOfPidginRTF(u"\\'7b x\\'7d "), u"x");
}

TEST(PidginRTFReader, AHexEscapeWithoutABlankSwallowsWhatFollows) {
  EXPECT_EQ(textOfPidginRTF(u"it\\'27s"), u"it");
  EXPECT_EQ(textOfPidginRTF(u"it\\'27s on"), u"iton");
}

TEST(PidginRTFReader, ABackslashBeforeALineFeedSwallowsWhatFollows) {
  EXPECT_EQ(textOfPidginRTF(u"a\\\nb c"), u"ac");
  EXPECT_EQ(textOfPidginRTF(u"a\\\nb\tc"), u"ac");
  EXPECT_EQ(textOfPidginRTF(u"a\\\nb}c"), u"ac");
}

TEST(PidginRTFReader, AControlWordRunsUpToTheRightBrace) {
  EXPECT_EQ(textOfPidginRTF(u"{\\bx}"), u"");
  EXPECT_EQ(textOfPidginRTF(u"{\\bx}y"), u"y");
}

TEST(PidginRTFReader, LineFeedsAndBracesAreDropped) {
  EXPECT_EQ(textOfPidginRTF(u"a\nb{c}d"), u"abcd");
  EXPECT_EQ(textOfPidginRTF(u"}}{{"), u"");
}

TEST(PidginRTFReader, CarriageReturnsAndTabsInTextAreKept) {
  EXPECT_EQ(textOfPidginRTF(u"a\rb\tc"), u"a\rb\tc");
}

TEST(PidginRTFReader, CharactersOutsideASCIIAreKept) {
  EXPECT_EQ(textOfPidginRTF(u"é水\U0001F600\xD83D"), u"é水\U0001F600\xD83D");
}

TEST(PidginRTFReader, AnEmptyInputYieldsAnEmptyText) { EXPECT_EQ(textOfPidginRTF(u""), u""); }

TEST(PidginRTFReader, AControlWordAtTheVeryEndEndsTheText) {
  EXPECT_EQ(textOfPidginRTF(u"abc\\b"), u"abc");
  EXPECT_EQ(textOfPidginRTF(u"abc\\"), u"abc");
  EXPECT_EQ(textOfPidginRTF(u"abc{\\"), u"abc");
  EXPECT_EQ(textOfPidginRTF(u"abc\\uc"), u"abc");
  EXPECT_EQ(textOfPidginRTF(u"abc\\rquote"), u"abc'");
}

TEST(PidginRTFReader, NoInputHasUnknownControlCharacters) {
  int reports = 0;
  forEachString<char16_t>({u"\n", u"{", u"}", u"\\", u" ", u"a"}, 5,
                          [&](const std::u16string &rtf) {
                            textOfPidginRTF(rtf, [&](std::u16string_view) { ++reports; });
                          });
  EXPECT_EQ(reports, 0);
}

// Every input of up to seven letters, all that begin with one letter in a test of their own, so
// that they run side by side. Two keywords are letters of their own; else none would occur.
class ShortPidginRTF : public testing::TestWithParam<std::size_t> {};

const std::vector<std::u16string> letters = {u"\n", u"{", u"}",      u"\\", u" ",
                                             u"\t", u"a", u"rquote", u"uc"};

constexpr std::size_t lettersBehindTheFirst = test_support::effort(6, 5);

TEST_P(ShortPidginRTF, IsReadAsByTheReference) {
  std::size_t inputs = 0;
  forEachString<char16_t>(
      letters, lettersBehindTheFirst,
      [&](const std::u16string &rtf) {
        ++inputs;
        ASSERT_EQ(textOfPidginRTF(rtf), reference::textOfPidginRTF(rtf))
            << testing::PrintToString(rtf);
      },
      letters[GetParam()]);
  EXPECT_EQ(inputs, test_support::effort(597'871u, 66'430u));  // 1 + 9 + 9² + … + 9⁶, or … + 9⁵
}

INSTANTIATE_TEST_SUITE_P(AfterEachLetter, ShortPidginRTF,
                         testing::Range(std::size_t{0}, letters.size()));

// Bulk copying works in blocks: whatever stands at any place of a text longer than several
// blocks must be found.
TEST(PidginRTFReader, FindsWhatEndsATextOrAWordAtEveryPlaceOfALongInput) {
  for (const char16_t special : u"\n{}\\ \t"sv) {
    for (std::size_t length = 0; length < 100; ++length) {
      for (std::size_t place = 0; place < length; ++place) {
        std::u16string rtf(length, u'a');
        rtf[place] = special;
        ASSERT_EQ(textOfPidginRTF(rtf), reference::textOfPidginRTF(rtf));
        ASSERT_EQ(textOfPidginRTF(u"\\" + rtf), reference::textOfPidginRTF(u"\\" + rtf));
      }
    }
  }
}

// What is written without escapes comes back, with all attributes gone.
TEST(PidginRTFReader, ReadsThePlainTextOfWhatTheWriterMakes) {
  const std::u16string text = u"A bold, B";
  for (unsigned pattern = 0; pattern < 32; ++pattern) {
    formats::PidginRTFWriter writer;
    writer.append(text, {.bold = (pattern & 1) != 0,
                         .italic = (pattern & 2) != 0,
                         .underline = (pattern & 4) != 0,
                         .superscript = (pattern & 8) != 0,
                         .subscript = (pattern & 16) != 0});
    writer.append(text, {});
    EXPECT_EQ(textOfPidginRTF(writer.finish()), text + text);
  }
}

}  // namespace
