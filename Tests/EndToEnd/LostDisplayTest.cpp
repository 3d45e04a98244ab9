// The display goes away while the host runs, as when an X server crashes or a session ends: the
// host ends with a line and a status, who waits for it is told, and the library is whole.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
using testing::HasSubstr;

// A display of the test's own, in place of the desktop's until the test is over.
class EndableDisplay {
 public:
  EndableDisplay() : desktops_(std::getenv("DISPLAY")) {
    server_ = std::make_unique<ChildProcess>(std::vector<std::string>{
        "Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24", "-nolisten", "tcp"});
    setenv("DISPLAY", (":" + server_->readLine()).c_str(), 1);
  }
  ~EndableDisplay() { setenv("DISPLAY", desktops_.c_str(), 1); }
  EndableDisplay(const EndableDisplay &) = delete;
  EndableDisplay &operator=(const EndableDisplay &) = delete;

  void end() { server_->end(); }

 private:
  std::string desktops_;
  std::unique_ptr<ChildProcess> server_;
};

class LostDisplay : public testing::Test {
 protected:
  LostDisplay() {
    writeFile(folder_.path() / "one.bib", "@book{doe2001,title={T},author={Doe, Jane},year=2001}");
    run({program("korvo"), "import", (folder_.path() / "one.bib").string(), "--into",
         library_.string()});
    bytes_ = readFile(library_);
  }

  void expectToldEnd(ChildProcess &korvo, std::size_t logBefore) {
    EXPECT_EQ(korvo.waitForExit(), 1);
    const std::string said = korvo.standardError().substr(logBefore);
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
    EXPECT_THAT(said, HasSubstr("korvo: the display is gone"));
    EXPECT_FALSE(bytes_.empty());
    EXPECT_EQ(readFile(library_), bytes_);
  }

  EndableDisplay display_;
  const TemporaryDirectory folder_;
  const std::filesystem::path library_ = folder_.path() / "my.korvolib";
  std::string bytes_;
};

TEST_F(LostDisplay, AtRestEndsTheHostWithALine) {
  Host host({}, library_);
  ASSERT_TRUE(host.isReady());
  const std::size_t before = host.process().standardError().size();
  display_.end();
  expectToldEnd(host.process(), before);
}

TEST_F(LostDisplay, DuringADialogEndsTheHostAndIsToldToTheWordProcessor) {
  Host host({"--favorite", "apa", "--favorite", "ieee"}, library_);
  ASSERT_TRUE(host.isReady());
  const std::size_t before = host.process().standardError().size();
  ChildProcess mellel({program("mellel"), "scan", example("draft-textedit.rtf").string(), "-o",
                       (folder_.path() / "copy.rtf").string()});
  ASSERT_TRUE(host.process().waitForLine("dialog: open"));
  display_.end();
  expectToldEnd(host.process(), before);
  EXPECT_EQ(mellel.waitForExit(), noHost);
  EXPECT_THAT(mellel.standardError(), HasSubstr("Korvo ended before it answered"));
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "copy.rtf"));
}

}  // namespace
