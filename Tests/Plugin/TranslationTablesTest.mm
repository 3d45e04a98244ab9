// The tables of texts of every language, as they lie in the bundle: complete, and with the
// arguments of the English texts. What they say is for people to judge.

#include "Support/Text.h"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace plugin_test {
namespace {

NSString *const tables[] = {@"Plugin", @"ScanDialog"};

NSString *resources() { return [ns(PLUGIN_BUNDLE) stringByAppendingPathComponent:@"Resources"]; }

std::set<std::string> languages() {
  std::set<std::string> names;
  NSArray *files = [[NSFileManager defaultManager] directoryContentsAtPath:resources()];
  for (NSUInteger index = 0; index < [files count]; ++index) {
    NSString *file = [files objectAtIndex:index];
    if ([[file pathExtension] isEqual:@"lproj"]) {
      names.insert(str([file stringByDeletingPathExtension]));
    }
  }
  return names;
}

std::map<std::string, std::string> readTable(const std::string &language, NSString *table) {
  NSString *path =
      [NSString stringWithFormat:@"%@/%@.lproj/%@.strings", resources(), ns(language), table];
  NSDictionary *texts = [NSDictionary dictionaryWithContentsOfFile:path];
  std::map<std::string, std::string> read;
  NSEnumerator *keys = [texts keyEnumerator];
  while (NSString *key = [keys nextObject]) {
    read[str(key)] = str([texts objectForKey:key]);
  }
  return read;
}

// The kind of each argument by its position, from 1 on: {{1, 'd'}, {2, '@'}}. Nothing where the
// format is none that stands for certain: with positions for some arguments only, or cut short.
std::optional<std::map<int, char>> argumentsOf(const std::string &format) {
  std::map<int, char> kinds;
  int withoutPosition = 0;
  bool hasPositions = false;
  for (std::size_t at = format.find('%'); at != std::string::npos; at = format.find('%', at)) {
    ++at;
    if (format.substr(at, 1) == "%") {
      ++at;
      continue;
    }
    int position = 0;
    const std::size_t end = format.find_first_not_of("0123456789", at);
    if (end != at && end < format.size() && format[end] == '$') {
      position = std::stoi(format.substr(at, end - at));
      at = end + 1;
      hasPositions = true;
    }
    if (at >= format.size() || (format[at] != 'd' && format[at] != '@')) {
      return std::nullopt;
    }
    kinds[position == 0 ? ++withoutPosition : position] = format[at];
  }
  return hasPositions && withoutPosition != 0 ? std::nullopt : std::optional(kinds);
}

class TranslationTables : public testing::Test {
 protected:
  void SetUp() override { pool_ = [[NSAutoreleasePool alloc] init]; }
  void TearDown() override { [pool_ drain]; }

 private:
  NSAutoreleasePool *pool_ = nil;
};

TEST_F(TranslationTables, AreThereForElevenLanguages) {
  const std::set<std::string> expected = {"Hebrew", "de", "en", "es", "fr",     "it",
                                          "ja",     "nl", "pt", "ru", "zh-Hans"};
  EXPECT_EQ(languages(), expected);
}

TEST_F(TranslationTables, HaveTheSameKeysInEveryLanguage) {
  for (NSString *table : tables) {
    std::set<std::string> keys;
    for (const auto &[key, text] : readTable("en", table)) {
      EXPECT_EQ(text, key) << "an English text is its own key";
      keys.insert(key);
    }
    EXPECT_EQ(keys.size(), [table isEqual:@"Plugin"] ? 8u : 5u);
    for (const std::string &language : languages()) {
      std::set<std::string> found;
      for (const auto &[key, text] : readTable(language, table)) {
        found.insert(key);
        EXPECT_NE(text, "") << language << ": " << key;
        EXPECT_TRUE(language == "en" || text != key) << language << ": " << key;
      }
      EXPECT_EQ(found, keys) << language;
    }
  }
}

TEST_F(TranslationTables, TakeTheArgumentsOfTheEnglishTexts) {
  for (NSString *table : tables) {
    for (const std::string &language : languages()) {
      for (const auto &[key, text] : readTable(language, table)) {
        ASSERT_TRUE(argumentsOf(key));
        EXPECT_EQ(argumentsOf(text), argumentsOf(key)) << language << ": " << text;
      }
    }
  }
}

// So that the test above can fail.
TEST_F(TranslationTables, ArgumentsAreToldByPositionAndKind) {
  using Kinds = std::map<int, char>;
  EXPECT_EQ(argumentsOf("none, 100 %%"), Kinds());
  EXPECT_EQ(argumentsOf("%d %@: %d"), (Kinds{{1, 'd'}, {2, '@'}, {3, 'd'}}));
  EXPECT_EQ(argumentsOf("%2$@ %1$d"), argumentsOf("%d %@"));
  EXPECT_NE(argumentsOf("%@ %d"), argumentsOf("%d %@"));
  EXPECT_NE(argumentsOf("%d"), argumentsOf("%d %@"));
  EXPECT_EQ(argumentsOf("%1$d %@"), std::nullopt);
  EXPECT_EQ(argumentsOf("%s"), std::nullopt);
  EXPECT_EQ(argumentsOf("50 %"), std::nullopt);
}

}  // namespace
}  // namespace plugin_test
