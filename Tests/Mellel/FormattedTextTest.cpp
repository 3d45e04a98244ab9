#include <StandIns/Mellel/RTF/Escape.h>
#include <StandIns/Mellel/RTF/FormattedText.h>

#include <gtest/gtest.h>

namespace mellel::rtf {
namespace {

std::string roundTrip(std::string_view pidgin) {
  const auto formatted = readPidginRTF(pidgin);
  return formatted ? groupOfText(*formatted) : formatted.error();
}

TEST(FormattedText, PidginGroupsKeepTheirFormatting) {
  EXPECT_EQ(roundTrip("(Smith {\\i et al.}, {\\b x}{\\super 1}{\\sub 2}{\\ul u})"),
            "{(Smith {\\i et al.}, {\\b x}{\\super 1}{\\sub 2}{\\ul u})}");
}

TEST(FormattedText, NestedPidginGroupsAddUp) {
  EXPECT_EQ(roundTrip("{\\b A}{\\i {\\b B}}"), "{{\\b A}{\\i\\b B}}");
}

TEST(FormattedText, PidginEscapesAreCharacters) {
  EXPECT_EQ(plainText(*readPidginRTF("it\\'27s \\'7b x\\'7d  \\'5c caf\\uc0\\u233 "
                                     "\\uc0\\u-10179 \\uc0\\u-8704 ")),
            "it's {x} \\café😀");
}

TEST(FormattedText, CharactersOutsideASCIIDoNotLeakTheirFallbackCount) {
  EXPECT_EQ(roundTrip("\\uc0\\u233 "), "{\\uc0 \\u233 }");
}

TEST(FormattedText, UTF8InPidginIsUnderstood) { EXPECT_EQ(roundTrip("é"), "{\\uc0 \\u233 }"); }

TEST(FormattedText, EscapedLineFeedBecomesALineBreakThatEndsNoParagraph) {
  EXPECT_EQ(roundTrip("a\\\nb"), "{\\uc0 a\\line b}");
}

TEST(FormattedText, UnbalancedPidginIsRefused) {
  EXPECT_FALSE(readPidginRTF("a}"));
  EXPECT_FALSE(readPidginRTF("{a"));
  EXPECT_FALSE(readPidginRTF("a\\"));
  EXPECT_FALSE(readPidginRTF("}{"));
}

TEST(FormattedText, UnknownWordsOfPidginDoNotReachTheDocument) {
  EXPECT_EQ(roundTrip("a\\cell\\trowd\\f9 b{\\*\\x y}"), "{\\uc0 a\\line b}");
}

TEST(Escape, SpecialCharactersAreEscapedAndControlCharactersLeftOut) {
  std::string rtf;
  appendEscaped(rtf, "a\\{b}\tc\nd\x07\xC2\xA0");
  EXPECT_EQ(rtf, "a\\\\\\{b\\}\\tab c\\line d\\~");
}

TEST(Escape, CharactersAreWrittenAsSignedUnits) {
  std::string rtf;
  appendEscaped(rtf, "é😀\xEF\xBF\xBD");
  EXPECT_EQ(rtf, "\\u233 \\u-10179 \\u-8704 \\u-3 ");
}

}  // namespace
}  // namespace mellel::rtf
