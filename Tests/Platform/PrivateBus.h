// A message bus of the test's own.
#pragma once

#include "ChildProcess.h"

#include <memory>
#include <string>

namespace platform_test {

// Runs from construction to destruction; the environment names it as the session bus.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  PrivateBus(const PrivateBus &) = delete;
  PrivateBus &operator=(const PrivateBus &) = delete;

  // Under the same address each time.
  void start();
  void stop();

 private:
  std::string directory_;
  std::unique_ptr<ChildProcess> daemon_;
};

}  // namespace platform_test
