#include <StandIns/Korvo/Library/FoldedText.h>

#include <gtest/gtest.h>

using korvo::library::foldedText;

TEST(FoldedText, IgnoresTheCaseOfLetters) {
  EXPECT_EQ(foldedText("SMITH"), "smith");
  EXPECT_EQ(foldedText("ΟΔΥΣΣΕΥΣ"), foldedText("Οδυσσευς"));
  EXPECT_EQ(foldedText("Straße"), foldedText("STRASSE"));
}

TEST(FoldedText, IgnoresDiacriticsHoweverTheyAreEncoded) {
  EXPECT_EQ(foldedText("Ångström"), "angstrom");
  EXPECT_EQ(foldedText("A\u030Angstro\u0308m"), "angstrom");
  EXPECT_EQ(foldedText("Dvořák"), "dvorak");
  EXPECT_EQ(foldedText("Nguyễn"), "nguyen");
}

TEST(FoldedText, IgnoresStrokesAndLigaturesThatDoNotDecompose) {
  EXPECT_EQ(foldedText("Ørsted"), "orsted");
  EXPECT_EQ(foldedText("Łukasiewicz"), "lukasiewicz");
  EXPECT_EQ(foldedText("Æthelred"), "aethelred");
  EXPECT_EQ(foldedText("Işık"), "isik");
}

TEST(FoldedText, KeepsOneBlankBetweenWordsAndNoneAround) {
  EXPECT_EQ(foldedText("  Smith \t\n 2001  "), "smith 2001");
  EXPECT_EQ(foldedText("Smith\u00A0\u20092001"), "smith 2001");
  EXPECT_EQ(foldedText(" \t "), "");
  EXPECT_EQ(foldedText(""), "");
}

TEST(FoldedText, TakesTypographicApostrophesAndDashesForPlainOnes) {
  EXPECT_EQ(foldedText("O’Brien"), "o'brien");
  EXPECT_EQ(foldedText("Gay–Lussac"), foldedText("Gay-Lussac"));
}

TEST(FoldedText, KeepsOtherScripts) {
  EXPECT_EQ(foldedText("Толстой"), foldedText("ТОЛСТОЙ"));
  EXPECT_EQ(foldedText("孫子"), "孫子");
  EXPECT_NE(foldedText("孫子"), foldedText("老子"));
}

TEST(FoldedText, SurvivesInvalidBytes) {
  EXPECT_EQ(foldedText("Smith\xFF"), "smith\uFFFD");
  EXPECT_EQ(foldedText("\xC3"), "\uFFFD");
  EXPECT_EQ(foldedText(std::string_view("a\0b", 3)), std::string_view("a\0b", 3));
}

TEST(FoldedText, IsStableUnderFoldingAgain) {
  for (const char *text :
       {"Ørsted", "Straße", "İstanbul", "ﬁn de siècle", "½ Å", "ΣΊΣΥΦΟΣ", "한국어"}) {
    EXPECT_EQ(foldedText(foldedText(text)), foldedText(text)) << text;
  }
}
