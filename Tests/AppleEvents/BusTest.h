// A message bus of the test's own, with a host on it that plays scenarios, and the tool.
#pragma once

#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/PrivateBus.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace appleevents_test {

using test_support::ChildProcess;
using test_support::PrivateBus;
using test_support::Result;
using test_support::TemporaryDirectory;

class BusTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    // GNUstep keeps what it allocates at its start until the end.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 0);
    bus_ = std::make_unique<PrivateBus>();
  }
  static void TearDownTestSuite() { bus_.reset(); }

  // Returns once the bus has noticed it, too.
  void endHost() {
    constexpr int rounds = 500;
    host_.reset();
    for (int round = 0; round < rounds; ++round) {
      const Result asked = test_support::run({MELLEL, "handshake"});
      if (asked.standardError.find("Korvo is not running") != std::string::npos) {
        return;
      }
    }
    ADD_FAILURE() << "the bus still knows the host";
  }

  void startHost(const std::string &scenario = "") {
    if (host_ != nullptr) {
      endHost();
    }
    host_ = std::make_unique<ChildProcess>(std::vector<std::string>{TEST_HOST, scenario});
    ASSERT_EQ(host_->readLine(), "ready");
  }

  std::string path() const { return (folder_.path() / "recording").string(); }

  Result record(std::vector<std::string> arguments) const {
    std::vector<std::string> all = {APPLE_EVENTS, "record", "-o", path()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return test_support::run(all);
  }

  static inline std::unique_ptr<PrivateBus> bus_;
  TemporaryDirectory folder_;
  std::unique_ptr<ChildProcess> host_;
};

}  // namespace appleevents_test
