#include "Payloads.h"

#include <Formats/Unicode.h>
#include <Tests/Support/AllStrings.h>
#include <Tests/Support/ReferenceUnicode.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using formats::appendUTF8;
using formats::copyPlainASCII;
using formats::decodeUTF8;
using formats::decodeUTF8Character;
using formats::encodeUTF8;
using formats::isASCII;
using formats::lengthInUTF8;

TEST(Unicode, WellFormedTextsOfEveryLengthAreConvertedBothWays) {
  EXPECT_EQ(decodeUTF8("aé水😀"), u"aé水😀");
  EXPECT_EQ(encodeUTF8(u"aé水😀"), "aé水😀");
  EXPECT_EQ(lengthInUTF8(u"aé水😀"), 1u + 2 + 3 + 4);
  EXPECT_EQ(decodeUTF8(""), u"");
  EXPECT_EQ(encodeUTF8(u""), "");
}

TEST(Unicode, NULAndByteOrderMarkAreOrdinaryCharacters) {
  EXPECT_EQ(decodeUTF8("a\0b"sv), u"a\0b"sv);
  EXPECT_EQ(decodeUTF8("\xEF\xBB\xBFx"), u"\xFEFFx");
}

TEST(Unicode, LoneContinuationByteBecomesOneReplacement) {
  EXPECT_EQ(decodeUTF8("a\x80\xBFz"), u"a\xFFFD\xFFFDz");
}

TEST(Unicode, BytesThatBeginNothingBecomeOneReplacementEach) {
  EXPECT_EQ(decodeUTF8("\xC0\x80"), u"\xFFFD\xFFFD");
  EXPECT_EQ(decodeUTF8("\xF5\xFF"), u"\xFFFD\xFFFD");
}

TEST(Unicode, SequenceCutShortBecomesOneReplacement) {
  EXPECT_EQ(decodeUTF8("\xE6\xB0z"), u"\xFFFDz");
  EXPECT_EQ(decodeUTF8("\xF0\x9F\x98"), u"\xFFFD");
  EXPECT_EQ(decodeUTF8("\xC3"), u"\xFFFD");
}

TEST(Unicode, OverlongFormsSurrogatesAndTooLargeValuesAreReplacedByteByByte) {
  EXPECT_EQ(decodeUTF8("\xE0\x80\x80"), u"\xFFFD\xFFFD\xFFFD");
  EXPECT_EQ(decodeUTF8("\xED\xA0\x80"), u"\xFFFD\xFFFD\xFFFD");
  EXPECT_EQ(decodeUTF8("\xF4\x90\x80\x80"), u"\xFFFD\xFFFD\xFFFD\xFFFD");
}

TEST(Unicode, LoneSurrogatesBecomeOneReplacementEach) {
  EXPECT_EQ(encodeUTF8(u"\xD83D"), "\xEF\xBF\xBD");
  EXPECT_EQ(encodeUTF8(u"\xDE00\xD83Dx"), "\xEF\xBF\xBD\xEF\xBF\xBDx");
  EXPECT_EQ(lengthInUTF8(u"\xDE00\xD83D"), 6u);
}

// From three bytes a unit on the text is not measured first.
TEST(Unicode, EncodesIntoABufferAsMuchAsFits) {
  for (const std::u16string &text : {u"abé水😀z"s, u"水水水"s, u"\xD83D\xD83D"s, u""s}) {
    const std::string whole = encodeUTF8(text);
    const std::size_t most = 3 * text.size() + 1;
    GuardedBytes memory(most);
    for (std::size_t size = 0; size <= most; ++size) {
      const auto room = memory.room(size);
      EXPECT_EQ(encodeUTF8(text, room), whole.size());
      EXPECT_EQ(std::string(room.data(), std::min(size, whole.size())), whole.substr(0, size));
    }
  }
}

// At every place of a text of several blocks, in a buffer that ends with the text.
TEST(Unicode, CopiesPlainASCIIUpToTheFirstUnitThatIsNot) {
  GuardedBytes memory(70);
  for (std::size_t length = 0; length <= 70; ++length) {
    char *const buffer = memory.room(length).data();
    EXPECT_EQ(copyPlainASCII(std::u16string(length, u'\x7F'), buffer), length);
    EXPECT_EQ(std::string(buffer, length), std::string(length, '\x7F'));
    for (std::size_t place = 0; place < length; ++place) {
      for (const char16_t unit : {u'\0', u'\x80', u'\xFF', u'\x100', u'\x6100', u'\x8061'}) {
        std::u16string text(length, u'a');
        text[place] = unit;
        ASSERT_EQ(copyPlainASCII(text, buffer), place) << static_cast<int>(unit);
      }
      for (const char byte : {'\0', '\x80', '\xFF'}) {
        std::string text(length, 'a');
        text[place] = byte;
        ASSERT_EQ(copyPlainASCII(text, buffer), place) << static_cast<int>(byte);
      }
    }
  }
}

TEST(Unicode, EveryCodePointSurvivesTheRoundTrip) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint >= 0xD800 && codePoint <= 0xDFFF) {
      continue;
    }
    std::u16string text;
    reference::appendUTF16(text, codePoint);
    const std::string bytes = encodeUTF8(text);
    ASSERT_EQ(bytes, reference::encodeUTF8(text));
    ASSERT_EQ(bytes.size(), lengthInUTF8(text));
    ASSERT_EQ(decodeUTF8(bytes), text);
  }
}

// Every byte at which a rule changes, and its neighbours.
const std::vector<std::string> boundaryBytes = {
    "\0"s,  "A",    "\x7F", "\x80", "\x8F", "\x90", "\x9F", "\xA0", "\xBF",
    "\xC0", "\xC1", "\xC2", "\xDF", "\xE0", "\xE1", "\xEC", "\xED", "\xEE",
    "\xEF", "\xF0", "\xF1", "\xF3", "\xF4", "\xF5", "\xFF"};

void expectDecodedAsTheReference(GuardedBytes &memory, const std::string &bytes) {
  ASSERT_EQ(decodeUTF8(memory.hold(bytes)), reference::decodeUTF8(bytes))
      << testing::PrintToString(bytes);
}

TEST(Unicode, DecodesEveryFourBoundaryBytesAsTheReference) {
  GuardedBytes memory(8);
  forEachString(boundaryBytes, 4,
                [&](const std::string &bytes) { expectDecodedAsTheReference(memory, bytes); });
}

TEST(Unicode, DecodesEverySixBytesOfASmallerAlphabetAsTheReference) {
  GuardedBytes memory(8);
  forEachString<char>(
      {"A", "\x80", "\xA0", "\xC2", "\xE0", "\xED", "\xF0", "\xF4"}, 6,
      [&](const std::string &bytes) { expectDecodedAsTheReference(memory, bytes); });
}

// Bulk copying works in blocks: whatever stands at any place of a text longer than several
// blocks must be found.
TEST(Unicode, FindsWhatIsNotASCIIAtEveryPlaceOfALongText) {
  for (std::size_t length = 0; length < 100; ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      std::u16string text(length, u'a');
      text[place] = u'é';
      const std::string bytes = encodeUTF8(text);
      ASSERT_EQ(bytes, reference::encodeUTF8(text));
      ASSERT_EQ(lengthInUTF8(text), bytes.size());
      ASSERT_EQ(decodeUTF8(bytes), text);
    }
  }
}

TEST(Unicode, EncodesEveryFiveBoundaryUnitsAsTheReference) {
  const std::vector<std::u16string> letters = {u"a",      u"\x7F",   u"\x80",   u"\x7FF",
                                               u"\x800",  u"\xD800", u"\xDBFF", u"\xDC00",
                                               u"\xDFFF", u"\xFFFF"};
  forEachString(letters, 5, [&](const std::u16string &text) {
    const std::string bytes = encodeUTF8(text);
    ASSERT_EQ(bytes, reference::encodeUTF8(text));
    ASSERT_EQ(bytes.size(), lengthInUTF8(text));
  });
}

TEST(Unicode, ACharacterThatIsNoScalarValueIsAppendedAsTheReplacementCharacter) {
  std::string text;
  appendUTF8(text, 0xD800);
  appendUTF8(text, 0xDFFF);
  appendUTF8(text, 0x110000);
  appendUTF8(text, U'a');
  appendUTF8(text, U'é');
  appendUTF8(text, U'😀');
  EXPECT_EQ(text,
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
            "aé😀");
}

TEST(Unicode, BytesThatAreNotExactlyOneCharacterAreTheReplacementCharacter) {
  for (const char32_t character : {U'a', U'\x7F', U'\x80', U'é', U'\xFFFD', U'😀', U'\x10FFFF'}) {
    std::string bytes;
    appendUTF8(bytes, character);
    EXPECT_EQ(decodeUTF8Character(bytes), character);
    EXPECT_EQ(decodeUTF8Character(bytes + "a"), U'\xFFFD');
    EXPECT_EQ(decodeUTF8Character(bytes.substr(1)), U'\xFFFD');
  }
  EXPECT_EQ(decodeUTF8Character("\xED\xA0\x80"), U'\xFFFD');
  EXPECT_EQ(decodeUTF8Character("\xF4\x90\x80\x80"), U'\xFFFD');
}

TEST(Unicode, ASCIIEndsAt7F) {
  EXPECT_TRUE(isASCII(""));
  EXPECT_TRUE(isASCII("a\x7F and more than a block of them"));
  EXPECT_FALSE(isASCII("more than a block of them, and then \x80"));
}

}  // namespace
