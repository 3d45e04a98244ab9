#include <StandIns/Korvo/Application/CommandLine.h>
#include <StandIns/Korvo/Engine/LibraryImporter.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

using korvo::application::Command;
using korvo::application::ImportFiles;
using korvo::application::parseCommandLine;
using korvo::application::RunHost;
using korvo::application::ShowHelp;
using korvo::application::ShowVersion;
using testing::HasSubstr;

namespace {

std::expected<Command, std::string> parse(std::initializer_list<std::string_view> words) {
  return parseCommandLine(std::span(words.begin(), words.size()));
}

std::string errorOf(std::initializer_list<std::string_view> words) {
  const auto command = parse(words);
  return command ? "no error" : command.error();
}

}  // namespace

TEST(CommandLine, TakesEveryOption) {
  const auto command =
      parse({"--library", "a.bib", "--plug-in", "P.bundle", "--favorite", "apa", "--library=b.ris",
             "--favorite=ieee", "--default-style", "nature", "--select", "A,B b", "--select=C"});
  ASSERT_TRUE(command);
  EXPECT_EQ(std::get<RunHost>(*command), (RunHost{.libraries = {"a.bib", "b.ris"},
                                                  .plugIn = "P.bundle",
                                                  .favorites = {"apa", "ieee"},
                                                  .defaultStyle = "nature",
                                                  .selectedTags = {"A", "B b", "C"}}));
}

TEST(CommandLine, OnlyALibraryIsNeeded) {
  EXPECT_EQ(std::get<RunHost>(*parse({"--library", "a.bib"})).libraries.size(), 1U);
  EXPECT_THAT(errorOf({}), HasSubstr("--library"));
  EXPECT_THAT(errorOf({"--favorite", "apa"}), HasSubstr("--library"));
}

TEST(CommandLine, NamesWhatItDoesNotKnow) {
  EXPECT_THAT(errorOf({"--libary", "a.bib"}), HasSubstr("unknown argument --libary"));
  EXPECT_THAT(errorOf({"--library", "a.bib", "stray"}), HasSubstr("unknown argument stray"));
  EXPECT_THAT(errorOf({""}), HasSubstr("unknown argument"));
}

TEST(CommandLine, NamesTheOptionThatLacksItsValue) {
  EXPECT_THAT(errorOf({"--library"}), HasSubstr("--library needs a value"));
  EXPECT_THAT(errorOf({"--library="}), HasSubstr("--library needs a value"));
  EXPECT_THAT(errorOf({"--library", ""}), HasSubstr("--library needs a value"));
}

TEST(CommandLine, EmptyTagsAreNoTags) {
  EXPECT_EQ(std::get<RunHost>(*parse({"--library", "a", "--select", ",A,,B,"})).selectedTags,
            (std::vector<std::string>{"A", "B"}));
}

TEST(CommandLine, HelpGoesBeforeEverythingElse) {
  EXPECT_TRUE(std::holds_alternative<ShowHelp>(*parse({"--help"})));
  EXPECT_TRUE(std::holds_alternative<ShowHelp>(*parse({"-h"})));
  EXPECT_TRUE(std::holds_alternative<ShowHelp>(*parse({"import", "--help"})));
}

// The importer's own error names them.
TEST(CommandLine, HelpNamesEveryKindOfFileThatIsImported) {
  const auto refused = korvo::engine::LibraryImporter().importFile("library.txt");
  ASSERT_FALSE(refused);
  const std::regex ending(R"( (\.[a-z]+))");
  std::size_t endings = 0;
  for (std::sregex_iterator found(refused.error().begin(), refused.error().end(), ending), end;
       found != end; ++found) {
    EXPECT_THAT(std::string(korvo::application::helpText().text()), HasSubstr((*found)[1].str()));
    ++endings;
  }
  EXPECT_GE(endings, 5U) << refused.error();
}

TEST(CommandLine, TheVersionIsTold) {
  EXPECT_TRUE(std::holds_alternative<ShowVersion>(*parse({"--version"})));
}

TEST(CommandLine, ImportTakesFilesAndALibrary) {
  EXPECT_EQ(std::get<ImportFiles>(*parse({"import", "a.bib", "--into", "my.korvolib", "b.ris"})),
            (ImportFiles{.files = {"a.bib", "b.ris"}, .database = "my.korvolib"}));
  EXPECT_THAT(errorOf({"import", "a.bib"}), HasSubstr("--into"));
  EXPECT_THAT(errorOf({"import", "--into", "my.korvolib"}), HasSubstr("file"));
  EXPECT_THAT(errorOf({"import", "a.bib", "--to", "b"}), HasSubstr("unknown argument --to"));
  EXPECT_THAT(errorOf({"import", "a.bib", "--into"}), HasSubstr("--into needs a value"));
}
