#include <StandIns/Mellel/Commands/Options.h>

#include <gtest/gtest.h>

#include <vector>

namespace mellel::commands {
namespace {

std::expected<Options, std::string> parse(const std::vector<const char *> &arguments) {
  return parseOptions(arguments);
}

std::string errorOf(const std::vector<const char *> &arguments) {
  const auto options = parse(arguments);
  return options ? "" : options.error();
}

TEST(Options, ScanTakesADocumentAndOptionsInAnyOrder) {
  const auto options =
      parse({"scan", "--style", "apa", "--timeout=5", "in.rtf", "--no-bibliography", "-o", "out"});
  ASSERT_TRUE(options);
  const auto &scan = std::get<FormatOptions>(options->command);
  EXPECT_EQ(scan.input, "in.rtf");
  EXPECT_EQ(scan.style, "apa");
  EXPECT_EQ(scan.output, "out");
  EXPECT_FALSE(scan.wantsBibliography);
  EXPECT_FALSE(scan.isLive);
  EXPECT_EQ(options->timeout, std::chrono::seconds(5));
}

TEST(Options, WithoutOptionsAScanWantsABibliographyAndNamesNoStyle) {
  const auto scan = std::get<FormatOptions>(parse({"scan", "in.rtf"})->command);
  EXPECT_TRUE(scan.wantsBibliography);
  EXPECT_EQ(scan.style, "");
  EXPECT_FALSE(scan.output);
}

TEST(Options, LiveMayWatch) {
  const auto live = std::get<FormatOptions>(parse({"live", "--watch", "a", "-o", "b"})->command);
  EXPECT_TRUE(live.isLive);
  EXPECT_TRUE(live.watches);
}

TEST(Options, InsertionTakesItsPlaceWholeOrNotAtAll) {
  EXPECT_FALSE(std::get<InsertOptions>(parse({"insert"})->command).place);
  const auto place =
      std::get<InsertOptions>(parse({"insert", "--into", "a", "--at", "x y", "-o", "b"})->command)
          .place;
  ASSERT_TRUE(place);
  EXPECT_EQ(place->text, "x y");
  EXPECT_EQ(errorOf({"insert", "--into", "a"}),
            "insert needs --into, --at and -o together, or none of them");
}

TEST(Options, CitationMayBeginWithADashAfterTwoDashes) {
  EXPECT_EQ(std::get<OpenOptions>(parse({"open", "--", "--help"})->command).citation, "--help");
}

TEST(Options, HelpIsGivenAnywhere) {
  EXPECT_TRUE(std::holds_alternative<HelpOptions>(parse({"--help"})->command));
  EXPECT_TRUE(std::holds_alternative<HelpOptions>(parse({"scan", "-h"})->command));
}

TEST(Options, AScanMayBeStrictQuietAndMakeFootnotes) {
  const auto options = parse({"scan", "a", "--strict", "--quiet", "--footnotes", "--json"});
  ASSERT_TRUE(options);
  const auto &scan = std::get<FormatOptions>(options->command);
  EXPECT_TRUE(scan.isStrict && scan.makesFootnotes && scan.asJSON && options->isQuiet);
  const auto plain = parse({"scan", "a"});
  const auto &none = std::get<FormatOptions>(plain->command);
  EXPECT_FALSE(none.isStrict || none.makesFootnotes || none.asJSON || plain->isQuiet);
}

TEST(Options, HelpTellsHowLongAnAnswerMayTake) {
  EXPECT_NE(helpText().text().find("--timeout SECONDS   how long each answer may take: 600"),
            std::string_view::npos);
}

TEST(Options, WrongUsageIsToldInOneLine) {
  EXPECT_EQ(errorOf({}), "a command is missing; mellel --help lists them");
  EXPECT_EQ(errorOf({"print"}), "there is no command \"print\"; mellel --help lists them");
  EXPECT_EQ(errorOf({"scan"}), "scan needs an RTF document");
  EXPECT_EQ(errorOf({"scan", ""}), "scan needs an RTF document");
  EXPECT_EQ(errorOf({"scan", "a", "b"}), "scan has no use for \"b\"");
  EXPECT_EQ(errorOf({"scan", "a", "--watch"}), "scan knows no option \"--watch\"");
  EXPECT_EQ(errorOf({"check", "a", "--footnotes"}), "check knows no option \"--footnotes\"");
  EXPECT_EQ(errorOf({"scan", "a", "-o", "-", "--json"}),
            "--json and -o - cannot both have standard output");
  for (const std::vector<const char *> &more :
       {std::vector{"--json"}, std::vector{"--strict"}, std::vector{"-o", "-"}}) {
    std::vector<const char *> arguments = {"live", "a", "--watch"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(errorOf(arguments),
              "--watch goes on and on: it takes no --json, no --strict and no -o -");
  }
  EXPECT_EQ(errorOf({"scan", "a", "--no-bibliography=1"}),
            "scan knows no option \"--no-bibliography=1\"");
  EXPECT_EQ(errorOf({"scan", "a", "--style"}), "--style needs a value");
  EXPECT_EQ(errorOf({"scan", "a", "--style="}), "--style needs a value");
  EXPECT_EQ(errorOf({"scan", "a", "-o", "b", "-o", "c"}), "-o is given twice");
  EXPECT_EQ(errorOf({"scan", "a", "--timeout", "soon"}),
            "--timeout needs a number of seconds, not \"soon\"");
  EXPECT_EQ(errorOf({"scan", "a", "--timeout", "0"}),
            "--timeout needs a number of seconds, not \"0\"");
  EXPECT_EQ(errorOf({"open"}), "open needs a citation");
}

}  // namespace
}  // namespace mellel::commands
