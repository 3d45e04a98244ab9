// The checks are only as good as what they are made with.
#include "Documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace endtoend;
using testing::ElementsAre;
using testing::Optional;

TEST(Documents, TextIsReadThroughEscapesAndGroups) {
  EXPECT_EQ(
      textOf(R"({\rtf1{\fonttbl{\f0 Times;}}\pard Caf\'e9 {\i \u8220\'93a\u8221\'94} \{b\}\par})"),
      "Café “a” {b}\n");
}

TEST(Documents, FallbacksHaveTheLengthThatTheirGroupSays) {
  EXPECT_EQ(textOf(R"({\uc0\u233 x}{\uc2\u233 abx}\u233 ax)"), "éxéxéx");
}

TEST(Documents, ACutPutTogetherAgainIsTheDocument) {
  const std::string rtf =
      "{\\rtf1 {\\*\\x \\{disc\\}}\n\\pard one \\{A\\}, two \\{{\\i B}\\}.\\par}";
  const Cut cut = cutAtBraces(rtf);
  EXPECT_THAT(cut.spans, ElementsAre("\\{A\\}", "\\{{\\i B}\\}"));
  EXPECT_EQ(cut.literals[0] + cut.spans[0] + cut.literals[1] + cut.spans[1] + cut.literals[2], rtf);
}

TEST(Documents, ReplacementsAreFoundBetweenTheLiterals) {
  const Cut cut = cutAtBraces("\n\\pard one \\{A\\}, two \\{B\\}.\\par");
  EXPECT_THAT(whatReplaced(cut, "\n\\pard one (a), two .\\par"), Optional(ElementsAre("(a)", "")));
}

TEST(Documents, OneByteThatChangedOutsideIsSeen) {
  const Cut cut = cutAtBraces("\n\\pard one \\{A\\}, two \\{B\\}.\\par");
  EXPECT_EQ(whatReplaced(cut, "\n\\pard 0ne (a), two (b).\\par"), std::nullopt);
  EXPECT_EQ(whatReplaced(cut, "\n\\pard one (a); two (b).\\par"), std::nullopt);
  EXPECT_EQ(whatReplaced(cut, "\n\\pard one (a), two (b).\\par "), std::nullopt);
}

}  // namespace
