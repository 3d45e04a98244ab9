#include <Formats/OneLine.h>
#include <Formats/Unicode.h>

#include <gtest/gtest.h>

using formats::inOneLine;

TEST(OneLine, NeitherEndsNorCommandsTheTerminal) {
  EXPECT_EQ(inOneLine("a\nb\r\x1B[2J\x7F\u009Bc\u0085"), "a b  [2J  c ");
}

TEST(OneLine, HasABlankForEachControlCharacterAndEveryOtherCharacterAsItIs) {
  for (char16_t unit = 0; unit < 0xD800; ++unit) {
    const bool isControlCharacter = unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
    const std::string character = formats::encodeUTF8({&unit, 1});
    EXPECT_EQ(inOneLine("<" + character + ">"), "<" + (isControlCharacter ? " " : character) + ">");
  }
  EXPECT_EQ(inOneLine("\U0001F600"), "\U0001F600");
  EXPECT_EQ(inOneLine(""), "");
}

TEST(OneLine, IsWellFormed) { EXPECT_EQ(inOneLine("a\xFF\xC3"), "a\uFFFD\uFFFD"); }
