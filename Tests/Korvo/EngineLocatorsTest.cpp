// What stands behind "@" in a citation: pages, or something else that its own word names.
#include "EngineDocument.h"

#include <gtest/gtest.h>

using namespace korvo_test;

namespace {

std::string located(std::u16string_view locator, const char *style = "apa") {
  return printOne(style, {cite("jones1999", locator)});
}

}  // namespace

TEST(EngineLocators, ChaptersAreChaptersHoweverTheyAreShortened) {
  for (const char16_t *text : {u"ch. 3", u"chap. 3", u"chap 3", u"Chapter 3", u"chap.3"}) {
    EXPECT_EQ(located(text), "(Jones & Lee, 1999, Chapter 3)");
  }
  EXPECT_EQ(located(u"chaps. 3-4"), "(Jones & Lee, 1999, Chapters 3–4)");
  EXPECT_EQ(located(u"chap. 3", "chicago-author-date"), "(Jones and Lee 1999, chap. 3)");
}

TEST(EngineLocators, SectionsMayBeWrittenAsASign) {
  for (const char16_t *text : {u"§ 5", u"§5", u"sec. 5", u"section 5", u"§\u00A05"}) {
    EXPECT_EQ(located(text), "(Jones & Lee, 1999, sec. 5)");
  }
  EXPECT_EQ(located(u"§§ 5-6"), "(Jones & Lee, 1999, secs. 5–6)");
  EXPECT_EQ(located(u"¶ 7"), "(Jones & Lee, 1999, para. 7)");
}

TEST(EngineLocators, AVolumeMayBeFollowedByAPage) {
  EXPECT_EQ(located(u"vol. 2"), "(Jones & Lee, 1999, vol. 2)");
  for (const char16_t *text : {u"vol. 2, 45", u"volume 2, 45", u"vol. 2: 45", u"vol. 2, p. 45"}) {
    EXPECT_EQ(located(text), "(Jones & Lee, 1999, vol. 2, p. 45)");
  }
  EXPECT_EQ(located(u"vol. II, 45–47"), "(Jones & Lee, 1999, vol. II, pp. 45–47)");
  EXPECT_EQ(located(u"vol. 2, ch. 3"), "(Jones & Lee, 1999, vol. 2, chap. 3)");
}

TEST(EngineLocators, OtherPartsOfAWorkHaveTheirOwnWords) {
  EXPECT_EQ(located(u"figure 2"), "(Jones & Lee, 1999, fig. 2)");
  EXPECT_EQ(located(u"note 3"), "(Jones & Lee, 1999, n. 3)");
  EXPECT_EQ(located(u"lines 12-14"), "(Jones & Lee, 1999, ll. 12–14)");
  EXPECT_EQ(located(u"bk. 4"), "(Jones & Lee, 1999, bk. 4)");
  EXPECT_EQ(located(u"part II"), "(Jones & Lee, 1999, pt. II)");
  EXPECT_EQ(located(u"app. B"), "(Jones & Lee, 1999, app. B)");
}

TEST(EngineLocators, EverythingElseIsPages) {
  EXPECT_EQ(located(u"45"), "(Jones & Lee, 1999, p. 45)");
  EXPECT_EQ(located(u"p. 45"), "(Jones & Lee, 1999, p. 45)");
  EXPECT_EQ(located(u"pp. 45-47"), "(Jones & Lee, 1999, pp. 45–47)");
  EXPECT_EQ(located(u"xii"), "(Jones & Lee, 1999, p. xii)");
  EXPECT_EQ(located(u"A12"), "(Jones & Lee, 1999, p. A12)");
  EXPECT_EQ(located(u"2:45"), "(Jones & Lee, 1999, p. 2:45)");
  EXPECT_EQ(located(u"v"), "(Jones & Lee, 1999, p. v)");
  EXPECT_EQ(located(u"passim"), "(Jones & Lee, 1999, p. passim)");
}
