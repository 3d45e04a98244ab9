#include <Formats/OneLine.h>
#include <Formats/Unicode.h>

#include <gtest/gtest.h>

using formats::inOneLine;

TEST(OneLine, NeitherEndsNorCommandsTheTerminal) {
  EXPECT_EQ(inOneLine("a\nb\r\x1B[2J\x7F\u009Bc\u0085"), "a b  [2J  c ");
}

TEST(OneLine, HasABlankForWhatCommandsEndsOrTurnsALineAndEveryOtherCharacterAsItIs) {
  for (char16_t unit = 0; unit < 0xD800; ++unit) {
    const bool isBlanked = unit < 0x20 || (unit >= 0x7F && unit <= 0x9F) ||
                           (unit >= 0x2028 && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
    const std::string character = formats::encodeUTF8({&unit, 1});
    EXPECT_EQ(inOneLine("<" + character + ">"), "<" + (isBlanked ? " " : character) + ">");
    EXPECT_EQ(formats::isOfOneLine(unit), !isBlanked);
  }
  EXPECT_EQ(inOneLine("\U0001F600"), "\U0001F600");
  EXPECT_EQ(inOneLine(""), "");
}

TEST(OneLine, IsNotTurnedRoundByWhatStandsInIt) {
  EXPECT_EQ(inOneLine("cod\u202Egpj.exe\u2066\u2028x"), "cod gpj.exe  x");
  // A mark for one place is part of a name.
  EXPECT_EQ(inOneLine("\u05D0\u200F!"), "\u05D0\u200F!");
}

TEST(OneLine, IsWellFormed) { EXPECT_EQ(inOneLine("a\xFF\xC3"), "a\uFFFD\uFFFD"); }
