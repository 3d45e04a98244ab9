#include <StandIns/Mellel/RTF/Escape.h>
#include <StandIns/Mellel/RTF/RichText.h>

#include <gtest/gtest.h>

namespace mellel::rtf {
namespace {

std::string roundTrip(std::string_view pidgin) {
  const auto formatted = readPidginRTF(pidgin);
  return formatted ? groupOfText(*formatted) : formatted.error();
}

TEST(RichText, PidginGroupsKeepTheirFormatting) {
  EXPECT_EQ(roundTrip("(Smith {\\i et al.}, {\\b x}{\\super 1}{\\sub 2}{\\ul u})"),
            "{(Smith {\\i et al.}, {\\b x}{\\super 1}{\\sub 2}{\\ul u})}");
}

TEST(RichText, NestedPidginGroupsAddUp) {
  EXPECT_EQ(roundTrip("{\\b A}{\\i {\\b B}}"), "{{\\b A}{\\i\\b B}}");
}

TEST(RichText, PidginEscapesAreCharacters) {
  EXPECT_EQ(plainText(*readPidginRTF("it\\'27s \\'7b x\\'7d  \\'5c caf\\uc0\\u233 "
                                     "\\uc0\\u-10179 \\uc0\\u-8704 ")),
            "it's {x} \\café😀");
}

TEST(RichText, CharactersOutsideASCIIDoNotLeakTheirFallbackCount) {
  EXPECT_EQ(roundTrip("\\uc0\\u233 "), "{\\uc0 \\u233 }");
}

TEST(RichText, UTF8InPidginIsUnderstood) { EXPECT_EQ(roundTrip("é"), "{\\uc0 \\u233 }"); }

TEST(RichText, EscapedLineFeedBecomesALineBreakThatEndsNoParagraph) {
  EXPECT_EQ(roundTrip("a\\\nb"), "{\\uc0 a\\line b}");
}

TEST(RichText, UnbalancedPidginIsRefused) {
  EXPECT_FALSE(readPidginRTF("a}"));
  EXPECT_FALSE(readPidginRTF("{a"));
  EXPECT_FALSE(readPidginRTF("a\\"));
  EXPECT_FALSE(readPidginRTF("}{"));
}

TEST(RichText, UnknownWordsOfPidginDoNotReachTheDocument) {
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
