// The wall clock jumps, as when a machine wakes or its time is set: nobody waits longer or shorter
// for it, and the same scan gives the same copy.
#include "Applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::HasSubstr;

constexpr char draft[] = "draft-textedit.rtf";
constexpr long day = 24 * 3600;

class ClockJumps : public testing::Test {
 protected:
  ClockJumps() {
    jumpTo(0);
    setenv("KORVO_CLOCK", file().c_str(), 1);
    setenv("LD_PRELOAD", SHIFTED_CLOCK, 1);
    host_ = std::make_unique<Host>();
  }
  ~ClockJumps() override { unsetenv("LD_PRELOAD"); }

  std::string file() const { return folder_.path() / "clock"; }
  void jumpTo(long seconds) { writeFile(file(), std::to_string(seconds) + "\n"); }

  const TemporaryDirectory folder_;
  std::unique_ptr<Host> host_;
};

TEST_F(ClockJumps, ReachTheProgramsUnderTest) {
  jumpTo(-3650 * day);
  EXPECT_LT(std::stoi(run({"date", "+%Y"}).standardOutput), 2020);
}

TEST_F(ClockJumps, ChangeNeitherAScanNorHowLongItTakes) {
  ASSERT_TRUE(host_->isReady()) << host_->process().standardError();
  const Scan before = scan(draft, {"--style", "apa"});
  ASSERT_EQ(before.result.status, 0) << before.result.standardError;
  for (const long shift : {day, -day, -3650 * day, 3650 * day, 0L}) {
    SCOPED_TRACE(shift);
    jumpTo(shift);
    const auto start = Clock::now();
    EXPECT_EQ(scan(draft, {"--style", "apa"}).copy, before.copy);
    EXPECT_EQ(scan(draft, {"--style", "apa"}, "live").copy, before.copy);
    EXPECT_LT(Clock::now() - start, 5s);
  }
  EXPECT_TRUE(host_->process().isRunning());
}

TEST_F(ClockJumps, ForwardsEndNoWait) {
  ASSERT_TRUE(host_->isReady());
  for (const char *command : {"scan", "live"}) {
    host_->stop();
    ChildProcess mellel({program("mellel"), command, example(draft).string(), "--style", "apa",
                         "--timeout", "60", "-o", (folder_.path() / "copy.rtf").string()});
    EXPECT_EQ(mellel.waitForExit(200ms), std::nullopt);
    jumpTo(day);
    EXPECT_EQ(mellel.waitForExit(200ms), std::nullopt);
    host_->process().send(SIGCONT);
    EXPECT_EQ(mellel.waitForExit(), 0) << mellel.standardError();
    jumpTo(0);
  }
}

TEST_F(ClockJumps, BackwardsMakeNoWaitLonger) {
  ASSERT_TRUE(host_->isReady());
  for (const char *command : {"scan", "live"}) {
    host_->stop();
    ChildProcess mellel({program("mellel"), command, example(draft).string(), "--style", "apa",
                         "--timeout", "1", "-o", (folder_.path() / "copy.rtf").string()});
    EXPECT_EQ(mellel.waitForExit(200ms), std::nullopt);
    jumpTo(-day);
    EXPECT_EQ(mellel.waitForExit(10s), brokenReply);
    EXPECT_THAT(mellel.standardError(), HasSubstr("Korvo did not answer"));
    host_->process().send(SIGCONT);
    jumpTo(0);
  }
}

}  // namespace
