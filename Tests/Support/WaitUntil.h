// Waiting for what another process does.
#pragma once

#include <chrono>
#include <thread>

namespace test_support {

// Asks until the answer is yes or the time is over; the last answer.
template <typename Condition>
bool waitUntil(std::chrono::milliseconds limit, Condition condition) {
  constexpr std::chrono::milliseconds pause{2};
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) {
      return condition();
    }
    std::this_thread::sleep_for(pause);
  }
  return true;
}

}  // namespace test_support
