// The main thread's run loop, from which everything that arrives is handled.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "Progress.h"

namespace wordprocessor {

// Runs the loop until the condition holds or the time is over; the condition is looked at
// whenever something was handled. Says whether it holds.
bool runLoopUntil(const std::function<bool()> &condition,
                  std::optional<Progress::Clock::time_point> deadline, Progress &progress);

// Calls back from the run loop whenever the descriptor can be read.
class DescriptorWatch {
 public:
  DescriptorWatch(int descriptor, std::function<void()> onReadable);
  ~DescriptorWatch();
  DescriptorWatch(const DescriptorWatch &) = delete;
  DescriptorWatch &operator=(const DescriptorWatch &) = delete;
  DescriptorWatch(DescriptorWatch &&) = delete;
  DescriptorWatch &operator=(DescriptorWatch &&) = delete;

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace wordprocessor
