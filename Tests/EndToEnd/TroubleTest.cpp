// What can go wrong for a user: one clear line, the status that says which kind of trouble it is,
// no half-written copy.
#include "Applications.h"

#include <Tests/Support/Progress.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using namespace endtoend;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Exactly one line, and it says something.
void expectOneLine(const std::string &text) {
  const std::string line = test_support::withoutProgress(text);
  EXPECT_EQ(std::ranges::count(line, '\n'), 1) << text;
  EXPECT_GT(line.size(), 11u) << text;
}

TEST(Trouble, WithoutAHostTheScanSaysSo) {
  const Scan copy = scan("draft-textedit.rtf", {"--style", "apa"});
  EXPECT_EQ(copy.result.status, noHost);
  expectOneLine(copy.result.standardError);
  EXPECT_THAT(copy.copy, IsEmpty());
}

TEST(Trouble, AFileThatIsNoRTFIsRefused) {
  Host host;
  const Scan copy = scan("library.bib", {"--style", "apa"});
  EXPECT_EQ(copy.result.status, brokenDocument);
  expectOneLine(copy.result.standardError);
  EXPECT_THAT(copy.result.standardError, HasSubstr("library.bib"));
  EXPECT_THAT(copy.copy, IsEmpty());
}

TEST(Trouble, AFileThatIsCutShortIsRefused) {
  const TemporaryDirectory directory;
  const std::string whole = readFile(example("draft-textedit.rtf"));
  writeFile(directory.path() / "half.rtf", whole.substr(0, whole.size() / 2));
  Host host;
  const Scan copy = scanFile(directory.path() / "half.rtf", {"--style", "apa"});
  EXPECT_EQ(copy.result.status, brokenDocument);
  expectOneLine(copy.result.standardError);
  EXPECT_THAT(copy.copy, IsEmpty());
}

TEST(Trouble, AFileThatIsNotThereIsNamed) {
  Host host;
  const Scan copy = scan("no-such-draft.rtf", {"--style", "apa"});
  EXPECT_EQ(copy.result.status, brokenDocument);
  expectOneLine(copy.result.standardError);
  EXPECT_THAT(copy.result.standardError, HasSubstr("no-such-draft.rtf"));
}

TEST(Trouble, TheDraftItselfIsNoPlaceForTheCopy) {
  const TemporaryDirectory directory;
  const auto draft = directory.path() / "draft.rtf";
  const auto link = directory.path() / "link.rtf";
  std::filesystem::copy_file(example("draft-textedit.rtf"), draft);
  std::filesystem::create_symlink(draft, link);
  Host host;
  for (const auto &output : {draft, link}) {
    const Result result = run({program("mellel"), "scan", draft, "--style", "apa", "-o", output});
    EXPECT_EQ(result.status, usageError);
    expectOneLine(result.standardError);
    EXPECT_EQ(readFile(draft), readFile(example("draft-textedit.rtf")));
  }
}

TEST(Trouble, ADirectoryThatIsNotThereLeavesNothingBehind) {
  Host host;
  const Result result = run({program("mellel"), "scan", example("draft-textedit.rtf").string(),
                             "--style", "apa", "-o", "/no/such/directory/copy.rtf"});
  EXPECT_NE(result.status, 0);
  expectOneLine(result.standardError);
}

TEST(Trouble, CommandsThatDoNotExistAreUsageErrors) {
  EXPECT_EQ(run({program("mellel")}).status, usageError);
  EXPECT_EQ(run({program("mellel"), "print"}).status, usageError);
  EXPECT_EQ(run({program("mellel"), "scan"}).status, usageError);
  EXPECT_EQ(run({program("korvo"), "--no-such-option"}).status, usageError);
}

TEST(Trouble, AHostThatDiesInTheMiddleOfAScanIsNoticed) {
  Host host;
  // A host that stands still has taken the request, and will never answer it.
  host.stop();
  const TemporaryDirectory directory;
  ChildProcess mellel({program("mellel"), "scan", example("draft-textedit.rtf").string(), "--style",
                       "apa", "-o", (directory.path() / "copy.rtf").string()});
  EXPECT_EQ(mellel.waitForExit(std::chrono::milliseconds(500)), std::nullopt);
  host.kill();
  EXPECT_EQ(mellel.waitForExit(), noHost);
  expectOneLine(mellel.standardError());
  EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST(Trouble, OneBrokenEntryOfALibraryIsReportedAndTheOthersAreThere) {
  const TemporaryDirectory directory;
  const auto library = directory.path() / "broken.bib";
  std::string text = readFile(example("library.bib"));
  const std::string entry = "@book{zipf1949,";
  const std::size_t position = text.find(entry);
  ASSERT_NE(position, std::string::npos);
  text.insert(position, "@book{broken1900,\n  title = {Never closed\n}\n\n");
  writeFile(library, text);
  const auto line =
      std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(position), '\n') + 1;

  Host host({}, library);
  ASSERT_TRUE(host.isReady()) << host.process().standardError();
  EXPECT_THAT(host.process().standardError(), HasSubstr("broken.bib"));
  EXPECT_THAT(host.process().standardError(), HasSubstr(std::to_string(line)));
  const Scan copy = scan("draft-textedit.rtf", {"--style", "apa"});
  EXPECT_EQ(copy.formatted("{Zipf 1949#zipf1949}"), "(Zipf, 1949)");
  EXPECT_EQ(copy.formatted("{Hoare 1969#hoare1969}"), "(Hoare, 1969)");
}

TEST(Trouble, ALibraryThatIsNotThereEndsTheHost) {
  const Result result = run({program("korvo"), "--library", "/no/such/library.bib"});
  EXPECT_EQ(result.status, 1);
  expectOneLine(result.standardError);
  EXPECT_THAT(result.standardError, HasSubstr("/no/such/library.bib"));
}

TEST(Trouble, ASecondHostGivesWay) {
  Host host;
  const Result second = run({program("korvo"), "--library", example("library.bib").string()});
  EXPECT_EQ(second.status, 1) << second.standardError;
  EXPECT_THAT(second.standardOutput, Not(HasSubstr("ready")));
  EXPECT_TRUE(host.process().isRunning());
}

}  // namespace
