// SIGTERM and SIGINT end the host within a second, whatever it does.
#include "Applications.h"
#include "Window.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;

// A second, and what a busy machine may add to it.
constexpr auto atMost = 3s;

class Ending : public testing::TestWithParam<int> {
 protected:
  static void expectEndOf(ChildProcess &process, int status) {
    const auto begin = std::chrono::steady_clock::now();
    process.send(GetParam());
    EXPECT_EQ(process.waitForExit(), status) << process.standardError();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, atMost);
  }

  // As soon as somebody has opened the pipe for reading; -1 where nobody does in twenty seconds.
  static int openForWriting(const std::filesystem::path &pipe) {
    for (int attempt = 0; attempt < 2000; ++attempt) {
      const int descriptor = open(pipe.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
      if (descriptor != -1) {
        return descriptor;
      }
      std::this_thread::sleep_for(10ms);
    }
    return -1;
  }

  const TemporaryDirectory folder_;
};

TEST_P(Ending, WhileALibraryIsReadFromAPipeThatNobodyFills) {
  const std::filesystem::path pipe = folder_.path() / "endless.bib";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  ChildProcess korvo({program("korvo"), "--library", pipe.string()});
  const int writer = openForWriting(pipe);
  ASSERT_NE(writer, -1) << "nobody reads it: " << korvo.standardError();
  expectEndOf(korvo, 0);
  close(writer);
}

// Many citations of one document, each of them another one: some seconds of work.
TEST_P(Ending, WhileADocumentIsFormatted) {
  std::string citations;
  for (int number = 0; number < 60'000; ++number) {
    citations += "\\{Hoare 1969@" + std::to_string(number) + "\\} ";
  }
  const std::filesystem::path draft = folder_.path() / "long.rtf";
  writeFile(draft, "{\\rtf1 " + citations + "}");
  Host host;
  ASSERT_TRUE(host.isReady()) << host.process().standardError();
  ChildProcess mellel({program("mellel"), "scan", draft.string(), "--style", "apa", "-o",
                       (folder_.path() / "copy.rtf").string()});
  std::this_thread::sleep_for(1s);
  expectEndOf(host.process(), 0);
  EXPECT_EQ(mellel.waitForExit(), 3) << "the host had done its work before it was ended";
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "copy.rtf"));
}

TEST_P(Ending, WhileAMouseButtonIsHeldDownInAMenu) {
  Host host({"--favorite", "apa", "--favorite", "ieee"});
  ASSERT_TRUE(host.isReady()) << host.process().standardError();
  ChildProcess mellel({program("mellel"), "scan", example("draft-textedit.rtf").string(), "-o",
                       (folder_.path() / "copy.rtf").string()});
  ASSERT_TRUE(host.process().waitForLine("dialog: open"));
  const Window dialog("Format Citations for Mellel");
  dialog.hold(230, -85);
  expectEndOf(host.process(), 0);
  run({"xdotool", "mouseup", "1"});
  EXPECT_NE(mellel.waitForExit(), 0);
}

INSTANTIATE_TEST_SUITE_P(, Ending, testing::Values(SIGTERM, SIGINT), [](const auto &tested) {
  return tested.param == SIGTERM ? "BySIGTERM" : "BySIGINT";
});

}  // namespace
