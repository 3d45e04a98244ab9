// Every document made of a few tokens, and many random ones: a citation is replaced, nothing
// else that a reader sees changes, formatting included.

#include <StandIns/Mellel/RTF/DocumentRewriting.h>
#include <Tests/Support/Effort.h>
#include <Tests/Support/ReadDocument.h>
#include <Tests/Support/ReferenceRewriting.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace mellel::rtf {
namespace {

using test_support::charactersOf;
using test_support::citationsAmong;
using test_support::withCitationsReplaced;

// Stands for a formatted citation; no document here holds it.
const std::string replacementText = "☃";

void expectOnlyCitationsChange(const std::string &rtf) {
  const auto before = charactersOf(rtf);
  const auto document = readDocumentText(rtf);
  ASSERT_EQ(before.has_value(), document.has_value()) << rtf;
  if (!before) {
    return;
  }
  const std::size_t count = document->citations.size();
  using Texts = std::vector<std::optional<RichText>>;
  ASSERT_EQ(formattedDocument(rtf, *document, Texts(count), {}), rtf);
  ASSERT_EQ(count, citationsAmong(*before).size()) << rtf;
  const std::string after =
      formattedDocument(rtf, *document, Texts(count, RichText{{replacementText}}), {});
  const auto charactersAfter = charactersOf(after);
  ASSERT_TRUE(charactersAfter) << rtf << "\n" << after;
  ASSERT_EQ(*charactersAfter, withCitationsReplaced(*before, replacementText)) << rtf << "\n"
                                                                               << after;
  const std::string without = formattedDocument(rtf, *document, Texts(count, RichText{}), {});
  auto expected = withCitationsReplaced(*before, replacementText);
  std::erase_if(expected, [](const test_support::Character &character) {
    return character.text == replacementText;
  });
  ASSERT_EQ(charactersOf(without), expected) << rtf << "\n" << without;
}

std::string documentOf(const std::vector<std::string> &tokens, std::size_t number,
                       std::size_t length) {
  std::string rtf = "{\\rtf1 ";
  for (std::size_t index = 0; index < length; ++index) {
    rtf += tokens[number % tokens.size()];
    number /= tokens.size();
  }
  return rtf + '}';
}

void expectOnlyCitationsChangeInAll(const std::vector<std::string> &tokens,
                                    std::size_t greatestLength) {
  std::size_t count = 1;
  for (std::size_t length = 0; length <= greatestLength; ++length, count *= tokens.size()) {
    for (std::size_t number = 0; number < count; ++number) {
      expectOnlyCitationsChange(documentOf(tokens, number, length));
      if (::testing::Test::HasFatalFailure()) {
        return;
      }
    }
  }
}

TEST(Rewriting, ChangesOnlyCitationsInEveryShortDocumentWithGroupsAndFormatting) {
  expectOnlyCitationsChangeInAll({"\\{", "\\}", "{", "}", "a", "\\b", " ", "\\i0 ", "\n"},
                                 test_support::effort(5, 4));
}

TEST(Rewriting, ChangesOnlyCitationsInEveryShortDocumentWithFallbacksAndStories) {
  expectOnlyCitationsChangeInAll({"\\u123?", "\\u125 ?", "\\uc0", "\\'7b", "\\'7d", "1",
                                  "{\\footnote ", "}", "\\par", "\\~\\i"},
                                 test_support::effort(5, 4));
}

TEST(Rewriting, ChangesOnlyCitationsInRandomDocuments) {
  const std::vector<std::string> tokens = {
      "\\{",     "\\}",      "\\{",         "\\}",       "{",          "}",     "a",
      " ",       "\\b",      "\\b0 ",       "\\i",       "\\plain",    "\\par", "\\cell ",
      "\\u233?", "\\uc0",    "\\u-10179 ?", "\\u-8704 ", "\\'e9",      "\\'7b", "\\'7d",
      "\n",      "\\*",      "{\\footnote", "{\\*\\x ",  "\\deleted",  "\\tab", "\\emdash",
      "\xE9",    "\\bin1 x", "\\f1",        "\\-",       "{\\shptxt ", "\\u0",  "-1"};
  std::mt19937 random(12);
  int understood = 0;
  for (int round = 0; round < test_support::effort(30'000, 3'000); ++round) {
    std::string rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset128 B;}}";
    std::size_t depth = 1;
    for (auto length = random() % 24; length > 0; --length) {
      const std::string &token = tokens[random() % tokens.size()];
      if (token == "}" && depth == 1) {
        continue;
      }
      depth += token.front() == '{' ? 1 : 0;
      depth -= token == "}" ? 1 : 0;
      rtf += token;
    }
    rtf += std::string(depth, '}');
    expectOnlyCitationsChange(rtf);
    if (HasFatalFailure()) {
      return;
    }
    understood += charactersOf(rtf) ? 1 : 0;
  }
  EXPECT_GT(understood, test_support::effort(25'000, 2'500));
}

TEST(Rewriting, HostileBytesAreRefusedOrLeftAsTheyAre) {
  std::mt19937 random(5);
  const std::string seed =
      "{\\rtf1\\ansi{\\fonttbl{\\f0 A;}}\\{Sm{\\i ith}\\}\\par{\\footnote \\{Li\\}}\\u233?\\'e9}";
  for (int round = 0; round < test_support::effort(20'000, 2'000); ++round) {
    std::string bytes = seed;
    for (auto count = random() % 4; count > 0; --count) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    expectOnlyCitationsChange(bytes);
    if (HasFatalFailure()) {
      return;
    }
  }
}

}  // namespace
}  // namespace mellel::rtf
