// What an author does while writing: inserting what is selected, correcting a reference, keeping a
// formatted copy beside the draft.
#include "Applications.h"
#include "Window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

namespace {

using namespace endtoend;
using testing::HasSubstr;
using testing::Not;

const std::string draft = "{\\rtf1\\ansi Meters differ \\{Alder 2002\\}, it is said.\\par}";

// Waits until the file holds the text, and says whether it came to that.
bool comesToHold(const std::filesystem::path &file, const std::string &text) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (std::chrono::steady_clock::now() < end) {
    if (std::filesystem::exists(file) && readFile(file).find(text) != std::string::npos) {
      return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

TEST(Writing, TheSelectionIsInsertedAndFormattedByTheNextScan) {
  const TemporaryDirectory directory;
  writeFile(directory.path() / "draft.rtf", draft);
  Host host({"--select", "turing1950"});
  const auto longer = directory.path() / "longer.rtf";
  const Result inserted =
      run({program("mellel"), "insert", "--into", (directory.path() / "draft.rtf").string(), "--at",
           "it is said", "-o", longer.string()});
  ASSERT_EQ(inserted.status, 0) << inserted.standardError;
  EXPECT_THAT(readFile(longer), HasSubstr("turing1950"));
  EXPECT_EQ(readFile(directory.path() / "draft.rtf"), draft);
  const Scan copy = scanFile(longer, {"--style", "apa"});
  EXPECT_EQ(copy.result.status, 0) << copy.result.standardError;
  EXPECT_THAT(copy.copy, HasSubstr("(Alder, 2002)"));
  EXPECT_THAT(copy.copy, HasSubstr("(Turing, 1950)"));
}

TEST(Writing, ACopyFollowsEverySaveOfTheDraft) {
  const TemporaryDirectory directory;
  const auto file = directory.path() / "draft.rtf";
  const auto copy = directory.path() / "copy.rtf";
  writeFile(file, draft);
  Host host;
  ASSERT_TRUE(host.isReady());
  ChildProcess mellel(
      {program("mellel"), "live", "--watch", file.string(), "--style", "apa", "-o", copy.string()});
  ASSERT_TRUE(comesToHold(copy, "(Alder, 2002)")) << mellel.standardError();
  EXPECT_THAT(readFile(copy), Not(HasSubstr("(Turing, 1950)")));
  writeFile(file, draft.substr(0, draft.size() - 1) + " Machines \\{Turing 1950\\}.\\par}");
  EXPECT_TRUE(comesToHold(copy, "(Turing, 1950)")) << mellel.standardError();
  mellel.send(SIGTERM);
  EXPECT_EQ(mellel.waitForExit(), 0);
}

TEST(Writing, AReferenceCorrectedInItsEditorIsCitedAsCorrected) {
  const TemporaryDirectory directory;
  const auto library = directory.path() / "my.korvolib";
  writeFile(directory.path() / "one.bib",
            "@book{doe2001,title={Old Title},author={Doe, Jane},year=2001,publisher={Press}}\n");
  ASSERT_EQ(run({program("korvo"), "import", (directory.path() / "one.bib").string(), "--into",
                 library.string()})
                .status,
            0);
  writeFile(directory.path() / "draft.rtf", "{\\rtf1\\ansi So \\{Doe 2001\\}.\\par}");
  Host host({}, library);
  ASSERT_EQ(run({program("mellel"), "open", "Doe 2001"}).status, 0);
  const Editor editor("doe2001");
  ASSERT_TRUE(editor.isOpen());
  editor.clickTitle();
  editor.press("x");
  editor.clickSave();
  const auto corrected = [&] {
    return scanFile(directory.path() / "draft.rtf", {"--style", "apa"}).copy.find("Old Titlex") !=
           std::string::npos;
  };
  // The click is on its way when the first scan asks.
  bool isCorrected = corrected();
  for (int attempt = 0; attempt < 20 && !isCorrected; ++attempt) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    isCorrected = corrected();
  }
  EXPECT_TRUE(isCorrected);
}

}  // namespace
