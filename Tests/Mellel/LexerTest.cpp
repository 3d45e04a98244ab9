#include <StandIns/Mellel/RTF/Lexer.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace mellel::rtf {
namespace {

std::vector<Token> tokensOf(std::string_view bytes) {
  std::vector<Token> tokens;
  Lexer lexer(bytes);
  for (Token token = lexer.next(); token.kind != TokenKind::end; token = lexer.next()) {
    tokens.push_back(token);
  }
  return tokens;
}

void expectTokensCover(std::string_view bytes) {
  std::size_t position = 0;
  for (const Token &token : tokensOf(bytes)) {
    ASSERT_EQ(token.begin, position);
    ASSERT_GT(token.end, token.begin);
    position = token.end;
  }
  ASSERT_EQ(position, bytes.size());
}

TEST(Lexer, ControlWordTakesItsNumberAndOneBlank) {
  const auto tokens = tokensOf("\\fs24  x");
  ASSERT_EQ(tokens.size(), 2U);
  EXPECT_EQ(tokens[0].word, "fs");
  EXPECT_EQ(tokens[0].parameter, 24);
  EXPECT_TRUE(tokens[0].isDelimited);
  EXPECT_EQ(tokens[1].begin, 6U);
}

TEST(Lexer, NumberMayBeNegative) {
  const auto tokens = tokensOf("\\u-3?");
  ASSERT_EQ(tokens.size(), 2U);
  EXPECT_EQ(tokens[0].parameter, -3);
  EXPECT_FALSE(tokens[0].isDelimited);
}

TEST(Lexer, MinusWithoutADigitIsText) {
  const auto tokens = tokensOf("\\b-x");
  ASSERT_EQ(tokens.size(), 2U);
  EXPECT_FALSE(tokens[0].hasParameter);
  EXPECT_EQ(tokens[1].begin, 2U);
}

TEST(Lexer, NumberTooLargeIsClamped) {
  EXPECT_EQ(tokensOf("\\fs99999999999999999999999999")[0].parameter, 2147483647);
  EXPECT_EQ(tokensOf("\\fs-99999999999999999999999999")[0].parameter, -2147483647);
}

TEST(Lexer, BinaryDataIsOneTokenWithItsWord) {
  const auto tokens = tokensOf("\\bin3 {}\\x");
  ASSERT_EQ(tokens.size(), 2U);
  EXPECT_EQ(tokens[0].kind, TokenKind::binary);
  EXPECT_EQ(tokens[1].begin, 9U);
}

TEST(Lexer, BinaryDataLongerThanTheInputIsUnfinished) {
  EXPECT_EQ(tokensOf("\\bin2147483647 x")[0].kind, TokenKind::unfinished);
  EXPECT_EQ(tokensOf("\\bin-1 x")[0].kind, TokenKind::binary);
}

TEST(Lexer, HexByteWithoutTwoDigitsIsASymbol) {
  const auto tokens = tokensOf("\\'e9\\'zz\\'");
  ASSERT_EQ(tokens.size(), 4U);
  EXPECT_EQ(tokens[0].kind, TokenKind::hexByte);
  EXPECT_EQ(tokens[0].byte, 0xE9);
  EXPECT_EQ(tokens[1].kind, TokenKind::controlSymbol);
  EXPECT_EQ(tokens[2].kind, TokenKind::text);
  EXPECT_EQ(tokens[3].kind, TokenKind::unfinished);
}

TEST(Lexer, SourceLineBreaksAreTokensOfTheirOwn) {
  const auto tokens = tokensOf("a\r\n\r\nb");
  ASSERT_EQ(tokens.size(), 3U);
  EXPECT_EQ(tokens[1].kind, TokenKind::sourceBreak);
}

TEST(Lexer, TokensPutTogetherAreTheInputForEveryShortString) {
  const std::string alphabet = "\\{}'a1- \n\xE9";
  constexpr std::size_t greatestLength = 5;
  std::size_t count = 1;
  for (std::size_t length = 0; length <= greatestLength; ++length, count *= alphabet.size()) {
    for (std::size_t number = 0; number < count; ++number) {
      std::string bytes;
      for (std::size_t rest = number; bytes.size() < length; rest /= alphabet.size()) {
        bytes += alphabet[rest % alphabet.size()];
      }
      expectTokensCover(bytes);
      if (HasFatalFailure()) {
        FAIL() << ::testing::PrintToString(bytes);
      }
    }
  }
}

TEST(Lexer, TokensPutTogetherAreTheInputForRandomBytes) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(random() % 400, '\0');
    for (char &byte : bytes) {
      byte = static_cast<char>(random());
    }
    expectTokensCover(bytes);
  }
}

}  // namespace
}  // namespace mellel::rtf
