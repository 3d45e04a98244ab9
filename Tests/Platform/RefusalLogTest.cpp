#include <Platform/Bus/RefusalLog.h>
#include <Platform/WithoutCocoa/RunLoopTurn.h>

#include <ApplicationServices/ApplicationServices.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;
using platform::RefusalLog;
using testing::HasSubstr;

class RefusalLogTest : public testing::Test {
 protected:
  static void runFor(std::chrono::milliseconds time) {
    const auto end = Clock::now() + time;
    while (Clock::now() < end) {
      platform::runLoopTurn(end);
    }
  }
  static std::ptrdiff_t lines(const std::string &text) { return std::ranges::count(text, '\n'); }
};

TEST_F(RefusalLogTest, AFloodIsTwoLinesAndACount) {
  testing::internal::CaptureStderr();
  RefusalLog log;
  for (int number = 0; number < 300'000; ++number) {
    log.refused(":1.7", memFullErr);
  }
  runFor(std::chrono::milliseconds(1200));
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(lines(said), 2) << said;
  EXPECT_THAT(said, HasSubstr("An event from :1.7 was refused with status -108"));
  EXPECT_THAT(said, HasSubstr("299999 more events were refused since"));
}

TEST_F(RefusalLogTest, OneRefusalIsOneLineAndTheNextAfterASecondAnother) {
  testing::internal::CaptureStderr();
  RefusalLog log;
  log.refused(":1.7", memFullErr);
  runFor(std::chrono::milliseconds(1200));
  log.refused(":1.8", errAECorruptData);
  runFor(std::chrono::milliseconds(10));
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(lines(said), 2) << said;
  EXPECT_THAT(said, HasSubstr(":1.8 was refused with status -1702"));
}

}  // namespace
