// The bus, the host or the word processor goes away, at any moment of a scan: the draft stays as it
// is, a copy is whole or not there, and whoever is left serves on.
#include "Applications.h"

#include <Tests/Support/PrivateBus.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

namespace {

using namespace endtoend;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::IsEmpty;

constexpr char draft[] = "draft-textedit.rtf";
constexpr int moments = 6;

// A bus that a test may end, in place of the desktop's until the test is over.
class EndableBus {
 public:
  EndableBus() : desktopBus_(std::getenv("DBUS_SESSION_BUS_ADDRESS")) {
    bus_ = std::make_unique<test_support::PrivateBus>();
  }
  ~EndableBus() {
    bus_.reset();
    setenv("DBUS_SESSION_BUS_ADDRESS", desktopBus_.c_str(), 1);
  }
  EndableBus(const EndableBus &) = delete;
  EndableBus &operator=(const EndableBus &) = delete;

  void stop() { bus_->stop(); }
  void start() { bus_->start(); }

 private:
  std::string desktopBus_;
  std::unique_ptr<test_support::PrivateBus> bus_;
};

TEST(Faults, TheHostServesOnWhenTheBusComesBack) {
  EndableBus bus;
  Host host;
  ASSERT_TRUE(host.isReady());
  const Scan before = scan(draft, {"--style", "apa"});
  ASSERT_EQ(before.result.status, 0) << before.result.standardError;
  bus.stop();
  const Scan without = scan(draft, {"--style", "apa"});
  EXPECT_EQ(without.result.status, noHost);
  EXPECT_THAT(without.copy, IsEmpty());
  bus.start();
  Scan after;
  const auto deadline = Clock::now() + patience;
  do {
    std::this_thread::sleep_for(100ms);
    after = scan(draft, {"--style", "apa"});
  } while (after.result.status == noHost && Clock::now() < deadline);
  EXPECT_EQ(after.result.status, 0) << after.result.standardError;
  EXPECT_EQ(after.copy, before.copy);
  EXPECT_TRUE(host.process().isRunning());
}

// What a scan comes to, and how long it takes, when nobody disturbs it.
struct Undisturbed {
  std::string copy;
  Clock::duration length;
};

Undisturbed undisturbedScan() {
  Host host;
  scan(draft, {"--style", "apa"});
  const auto start = Clock::now();
  const Scan whole = scan(draft, {"--style", "apa"});
  EXPECT_EQ(whole.result.status, 0) << whole.result.standardError;
  return {whole.copy, Clock::now() - start};
}

TEST(Faults, AHostKilledAtAnyMomentOfAScanLeavesACopyWholeOrNone) {
  const Undisturbed undisturbed = undisturbedScan();
  const std::string original = readFile(example(draft));
  for (int moment = 0; moment < moments; ++moment) {
    SCOPED_TRACE(moment);
    Host host;
    ASSERT_TRUE(host.isReady());
    const TemporaryDirectory folder;
    const auto copy = folder.path() / "copy.rtf";
    ChildProcess mellel({program("mellel"), "scan", example(draft).string(), "--style", "apa", "-o",
                         copy.string()});
    std::this_thread::sleep_for(undisturbed.length * moment / moments);
    host.kill();
    const auto status = mellel.waitForExit();
    ASSERT_TRUE(status);
    if (*status == 0) {
      EXPECT_EQ(readFile(copy), undisturbed.copy);
    } else {
      EXPECT_EQ(*status, noHost) << mellel.standardError();
      EXPECT_NE(mellel.standardError(), "");
      EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    }
    EXPECT_EQ(readFile(example(draft)), original);
  }
}

TEST(Faults, AWordProcessorKilledAtAnyMomentOfAScanLeavesTheHostServing) {
  const Undisturbed undisturbed = undisturbedScan();
  Host host;
  ASSERT_TRUE(host.isReady());
  for (int moment = 0; moment < moments; ++moment) {
    SCOPED_TRACE(moment);
    const TemporaryDirectory folder;
    const auto copy = folder.path() / "copy.rtf";
    ChildProcess mellel({program("mellel"), "scan", example(draft).string(), "--style", "apa", "-o",
                         copy.string()});
    std::this_thread::sleep_for(undisturbed.length * moment / moments);
    mellel.send(SIGKILL);
    ASSERT_TRUE(mellel.waitForExit());
    if (std::filesystem::exists(copy)) {
      EXPECT_EQ(readFile(copy), undisturbed.copy);
    }
    EXPECT_EQ(scan(draft, {"--style", "apa"}).copy, undisturbed.copy);
  }
  EXPECT_TRUE(host.process().isRunning());
}

}  // namespace
