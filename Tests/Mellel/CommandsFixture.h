// The commands as a user runs them: the real process, a host that plays a scenario, a message bus
// of the test's own.
#pragma once

#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/PrivateBus.h>
#include <Tests/Support/Progress.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mellel::commands {

namespace fs = std::filesystem;
using test_support::ChildProcess;
using test_support::PrivateBus;
using test_support::Result;
using test_support::withoutProgress;

inline const std::string document =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Times;}}\n"
    "\\pard As \\{Sm{\\i ith 2001}#S@4\\} and \\{Nobody 1900\\} say\\{!Silent 1\\}.\\par\n"
    "\\{bibliography\\}\\par\nEnd.\\par\n}\n";

class Commands : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    // GNUstep keeps what it allocates at its start until the end.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 0);
    bus_ = std::make_unique<PrivateBus>();
  }
  static void TearDownTestSuite() { bus_.reset(); }

  Commands() { write("in.rtf", document); }
  ~Commands() override {
    EXPECT_EQ(read("in.rtf"), expectedInput_) << "the document itself was changed";
  }

  void write(const std::string &name, const std::string &bytes) {
    folder_.write(name, bytes);
    if (name == "in.rtf") {
      expectedInput_ = bytes;
    }
  }
  std::string read(const std::string &name) const { return test_support::readFile(folder_ / name); }
  bool exists(const std::string &name) const { return fs::exists(folder_ / name); }
  std::string path(const std::string &name) const { return folder_ / name; }

  void startHost(const std::string &scenario = "") {
    host_.reset();  // there can be one at a time
    host_ = std::make_unique<ChildProcess>(std::vector<std::string>{TEST_HOST, scenario});
    ASSERT_EQ(host_->readLine(), "ready");
  }

  Result mellelWithProgress(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), MELLEL);
    return test_support::run(arguments);
  }

  Result mellel(std::vector<std::string> arguments) {
    Result ended = mellelWithProgress(std::move(arguments));
    ended.standardError = withoutProgress(ended.standardError);
    return ended;
  }

  Result scan(std::vector<std::string> more = {}) {
    std::vector<std::string> arguments = {"scan", path("in.rtf"), "--style",
                                          "apa",  "-o",           path("out.rtf")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return mellel(arguments);
  }

  // One line, the status, and nothing written.
  void expectFailure(const Result &ended, int status, const std::string &line) {
    EXPECT_EQ(ended.status, status);
    EXPECT_EQ(ended.standardError, "mellel: " + line + "\n");
    EXPECT_EQ(ended.standardOutput, "");
    EXPECT_EQ(folder_.fileCount(), 1U);
  }

  static inline std::unique_ptr<PrivateBus> bus_;
  std::unique_ptr<ChildProcess> host_;
  test_support::TemporaryDirectory folder_;
  std::string expectedInput_;
};

}  // namespace mellel::commands
