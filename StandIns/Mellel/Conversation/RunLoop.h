// The main thread's run loop, from which everything that arrives is handled.
#pragma once

#include <chrono>
#include <functional>
#include <optional>

namespace mellel::conversation {

// Runs the loop until the condition holds or the time is over; the condition is looked at
// whenever something was handled. Says whether it holds.
bool runLoopUntil(const std::function<bool()> &condition,
                  std::optional<std::chrono::steady_clock::time_point> deadline);

}  // namespace mellel::conversation
