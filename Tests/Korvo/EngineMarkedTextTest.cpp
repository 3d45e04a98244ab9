#include "EngineDocument.h"

#include <StandIns/Korvo/Engine/MarkedText.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

std::string read(std::u16string_view marked) {
  const korvo::engine::MarkedText result = korvo::engine::readMarkedText(marked);
  return (result.firstField ? korvo_test::markup(*result.firstField) + "|" : "") +
         korvo_test::markup(result.text);
}

}  // namespace

TEST(EngineMarkedText, PlainTextIsOneRun) {
  EXPECT_EQ(korvo::engine::readMarkedText(u"plain").text.runs.size(), 1u);
  EXPECT_EQ(read(u"plain"), "plain");
  EXPECT_TRUE(korvo::engine::readMarkedText(u"").text.isEmpty());
}

TEST(EngineMarkedText, EveryMarkChangesItsLook) {
  EXPECT_EQ(read(u"\u0002a\u0001\u0004b\u0001\u0006c\u0001\u0008d\u0001\u000fe\u0001\u0010f\u0001"),
            "<i>a</i><b>b</b><u>c</u><sc>d</sc><sup>e</sup><sub>f</sub>");
}

TEST(EngineMarkedText, LooksNestAndCanBeTakenBackInside) {
  EXPECT_EQ(read(u"\u0002a\u0004b\u0003c\u0001\u0001\u0001d"), "<i>a</i><i><b>b</b></i><b>c</b>d");
}

TEST(EngineMarkedText, NeighboursOfOneLookAreOneRun) {
  EXPECT_EQ(korvo::engine::readMarkedText(u"\u0002a\u0001\u0002b\u0001").text.runs.size(), 1u);
}

TEST(EngineMarkedText, ALeftMarginIsTheFirstFieldOnlyAtTheFront) {
  EXPECT_EQ(read(u"\u0013[1] \u0001\u0014 Text\u0001"), "[1]|Text");
  EXPECT_EQ(read(u"Text \u0013[1]\u0001"), "Text [1]");
}

TEST(EngineMarkedText, BlocksBeginLines) {
  EXPECT_EQ(read(u"a\u0012b\u0001c"), "a\nb\nc");
  EXPECT_EQ(read(u"\u0012a\u0001\u0015b\u0001"), "a\nb");
}

TEST(EngineMarkedText, MarksThatDoNotMatchAreIgnored) {
  EXPECT_EQ(read(u"\u0001a\u0001\u0001b\u0002c"), "ab<i>c</i>");
}

TEST(EngineMarkedText, AnyMarksGiveCleanRuns) {
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    std::u16string marked;
    std::u16string letters;
    for (int length = static_cast<int>(random() % 12); length > 0; --length) {
      const bool isMark = random() % 2 == 0;
      const auto character = static_cast<char16_t>(isMark ? random() % 32 : u'a' + random() % 3);
      marked += character;
      letters += isMark ? u"" : std::u16string(1, character);
    }
    const korvo::engine::MarkedText result = korvo::engine::readMarkedText(marked);
    std::u16string found = result.firstField ? result.firstField->plainText() : u"";
    for (const korvo::engine::Run &run : result.text.runs) {
      ASSERT_FALSE(run.text.empty());
      found += run.text;
    }
    std::erase(found, u'\n');
    // A first field stands in front, wherever its mark was; what is lost is nothing.
    std::ranges::sort(found);
    std::ranges::sort(letters);
    ASSERT_EQ(found, letters);
    for (std::size_t index = 1; index < result.text.runs.size(); ++index) {
      korvo::engine::Run other = result.text.runs[index];
      other.text = result.text.runs[index - 1].text;
      ASSERT_NE(other, result.text.runs[index - 1]);
    }
  }
}
