#include <StandIns/Mellel/RTF/CodePage.h>

#include <gtest/gtest.h>

namespace mellel::rtf {
namespace {

TEST(CodePage, WesternBytesBetween80And9FAreNoControlCharacters) {
  CodePages pages;
  const CodePage &page = pages.codePage(1252);
  EXPECT_EQ(page.decode("\x93"), U'“');
  EXPECT_EQ(page.decode("\x80"), U'€');
  EXPECT_EQ(page.decode("\xE9"), U'é');
  EXPECT_EQ(page.decode("a"), U'a');
}

TEST(CodePage, OtherSingleByteCodePagesAreKnown) {
  CodePages pages;
  EXPECT_EQ(pages.codePage(1250).decode("\xE8"), U'č');
  EXPECT_EQ(pages.codePage(1251).decode("\xE6"), U'ж');
  EXPECT_EQ(pages.codePage(1253).decode("\xE1"), U'α');
  EXPECT_EQ(pages.codePage(1255).decode("\xE0"), U'א');
  EXPECT_EQ(pages.codePage(1258).decode("\xE0"), U'à');
  EXPECT_EQ(pages.codePage(10000).decode("\x8E"), U'é');
  EXPECT_EQ(pages.codePage(437).decode("\x82"), U'é');
}

TEST(CodePage, UnknownNumberReadsAsWestern) {
  CodePages pages;
  EXPECT_EQ(&pages.codePage(4711), &pages.codePage(1252));
  EXPECT_EQ(&pages.codePage(-1), &pages.codePage(1252));
}

TEST(CodePage, JapaneseHasOneAndTwoByteCharacters) {
  CodePages pages;
  const CodePage &page = pages.codePage(932);
  EXPECT_EQ(page.sequenceLength(0x82), 2U);
  EXPECT_EQ(page.sequenceLength(0xB1), 1U);
  EXPECT_EQ(page.decode("\x82\xA0"), U'あ');
  EXPECT_EQ(page.decode("\xB1"), U'ｱ');
  EXPECT_EQ(page.decode("\x83\x5C"), U'ソ');
  EXPECT_EQ(page.decode("\xFC\xFF"), U'\xFFFD');
}

TEST(CodePage, OtherDoubleByteCodePagesAreKnown) {
  CodePages pages;
  EXPECT_EQ(pages.codePage(936).decode("\xD6\xD0"), U'中');
  EXPECT_EQ(pages.codePage(949).decode("\xC7\xD1"), U'한');
  EXPECT_EQ(pages.codePage(950).decode("\xA4\xA4"), U'中');
}

TEST(CodePage, UTF8RefusesOverlongAndBrokenSequences) {
  CodePages pages;
  const CodePage &page = pages.codePage(65001);
  EXPECT_EQ(page.sequenceLength(0xF0), 4U);
  EXPECT_EQ(page.decode("\xF0\x9F\x98\x80"), U'😀');
  EXPECT_EQ(page.decode("\xE0\x80\x80"), U'\xFFFD');
  EXPECT_EQ(page.decode("\xC3("), U'\xFFFD');
}

TEST(CodePage, FontsTellTheirCodePageByCharacterSet) {
  EXPECT_EQ(codePageOfCharacterSet(204), 1251);
  EXPECT_EQ(codePageOfCharacterSet(128), 932);
  EXPECT_EQ(codePageOfCharacterSet(1), 0);
}

}  // namespace
}  // namespace mellel::rtf
