// A message bus of the test's own.
#pragma once

#include "ChildProcess.h"
#include "TemporaryDirectory.h"

#include <filesystem>
#include <memory>
#include <string>

namespace test_support {

// Runs from construction to destruction; the environment names it as the session bus.
class PrivateBus {
 public:
  // With a rule more in its policy, such as <deny own="a.name"/>.
  explicit PrivateBus(const std::string &rule = "");
  PrivateBus(const PrivateBus &) = delete;
  PrivateBus &operator=(const PrivateBus &) = delete;

  // Under the same address each time.
  void start();
  void stop();

 private:
  std::filesystem::path socket() const { return directory_ / "bus"; }

  std::filesystem::path configuration() const { return directory_ / "configuration"; }

  TemporaryDirectory directory_;
  std::unique_ptr<ChildProcess> daemon_;
};

}  // namespace test_support
