// The document, the copy and their folder change while a scan is under way: the copy is that of the
// document as it was read, or there is none and one line says why; nobody else's file is lost.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
namespace fs = std::filesystem;
using testing::HasSubstr;

class ChangingDocument : public testing::TestWithParam<const char *> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host_.isReady()) << host_.process().standardError();
    fs::copy_file(example("draft-textedit.rtf"), draft_);
    ASSERT_EQ(run(command()).status, 0);
    undisturbed_ = readFile(copy_);
    fs::remove(copy_);
    bytes_ = readFile(draft_);
  }

  std::vector<std::string> command() const {
    return {program("mellel"), GetParam(), draft_.string(), "--style", "apa", "-o", copy_.string()};
  }

  // Runs the command, and the change while it waits for the host.
  Result scanWhile(const std::function<void()> &change) {
    host_.stop();
    ChildProcess mellel(command());
    EXPECT_EQ(mellel.waitForExit(300ms), std::nullopt);
    change();
    host_.process().send(SIGCONT);
    const auto status = mellel.waitForExit();
    return {status.value_or(-1), mellel.standardOutput(), mellel.standardError()};
  }

  void expectUndisturbed(const Result &result) {
    EXPECT_EQ(result.status, 0) << result.standardError;
    EXPECT_EQ(readFile(copy_), undisturbed_);
  }

  Host host_;
  const TemporaryDirectory folder_;
  const fs::path draft_ = folder_.path() / "draft.rtf";
  const fs::path copy_ = folder_.path() / "copy.rtf";
  std::string undisturbed_;
  std::string bytes_;
};

TEST_P(ChangingDocument, ThatIsSavedAnewIsScannedAsItWas) {
  const std::string newer = "{\\rtf1 Another \\{Turing 1950\\}.\\par}";
  expectUndisturbed(scanWhile([&] { writeFile(draft_, newer); }));
  EXPECT_EQ(readFile(draft_), newer);
}

TEST_P(ChangingDocument, ThatShrinksIsScannedAsItWas) {
  expectUndisturbed(scanWhile([&] { fs::resize_file(draft_, 0); }));
  EXPECT_EQ(readFile(draft_), "");
}

TEST_P(ChangingDocument, ThatVanishesIsScannedAsItWas) {
  expectUndisturbed(scanWhile([&] { fs::remove(draft_); }));
  EXPECT_FALSE(fs::exists(draft_));
}

TEST_P(ChangingDocument, ThatIsMovedToTheCopysNameIsNotReplaced) {
  const Result result = scanWhile([&] { fs::rename(draft_, copy_); });
  EXPECT_EQ(result.status, usageError);
  EXPECT_THAT(result.standardError,
              HasSubstr("copy.rtf is the document itself, which is never changed"));
  EXPECT_EQ(readFile(copy_), bytes_);
}

TEST_P(ChangingDocument, ThatALinkAtTheCopysNameLeadsToIsNotReplaced) {
  const Result result = scanWhile([&] { fs::create_symlink(draft_, copy_); });
  EXPECT_EQ(result.status, usageError);
  EXPECT_EQ(readFile(draft_), bytes_);
}

TEST_P(ChangingDocument, WhoseFolderVanishesIsToldInOneLine) {
  const Result result = scanWhile([&] { fs::remove_all(folder_.path()); });
  EXPECT_EQ(result.status, brokenDocument);
  EXPECT_THAT(result.standardError, HasSubstr("cannot write "));
  EXPECT_FALSE(fs::exists(folder_.path()));
}

INSTANTIATE_TEST_SUITE_P(During, ChangingDocument, testing::Values("scan", "live"),
                         [](const auto &tested) { return std::string(tested.param); });

}  // namespace
