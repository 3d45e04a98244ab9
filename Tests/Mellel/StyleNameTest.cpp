#include <StandIns/Mellel/Commands/StyleName.h>

#include <gtest/gtest.h>

namespace mellel::commands {
namespace {

constexpr const char *apa = "American Psychological Association 7th edition";

TEST(StyleName, ATitleOrAFilesNameMayBeThatOfTheStyle) {
  EXPECT_TRUE(mayBeNamed(apa, apa));
  EXPECT_TRUE(mayBeNamed("apa", apa));
  EXPECT_TRUE(mayBeNamed("APA", apa));
  EXPECT_TRUE(mayBeNamed("ieee", "IEEE Reference Guide version 11.29.2023"));
  EXPECT_TRUE(mayBeNamed("modern-language-association",
                         "MLA Handbook 9th edition (Modern Language Association)"));
  EXPECT_TRUE(mayBeNamed("mla", "Modern Language Association 9th edition"));
  EXPECT_TRUE(
      mayBeNamed("chicago-note-bibliography", "Chicago Manual of Style 17th edition (note)"));
  EXPECT_TRUE(mayBeNamed("Ärzteblatt", "Deutsches Ärzteblatt"));
  EXPECT_TRUE(mayBeNamed("*", "*"));
}

TEST(StyleName, AnotherNameMayNot) {
  for (const char *name :
       {"nosuch", "mla", "nature", "vancouver", "chicago-author-date", "*", ""}) {
    EXPECT_FALSE(mayBeNamed(name, apa)) << name;
  }
  EXPECT_FALSE(mayBeNamed("apa", ""));
}

}  // namespace
}  // namespace mellel::commands
