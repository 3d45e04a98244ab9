// The main thread's run loop, from which everything that arrives is handled.
#pragma once

#include "Progress.h"

#include <functional>
#include <optional>

namespace mellel {

// Runs the loop until the condition holds or the time is over; the condition is looked at
// whenever something was handled. Says whether it holds.
bool runLoopUntil(const std::function<bool()> &condition,
                  std::optional<Progress::Clock::time_point> deadline, Progress &progress);

}  // namespace mellel
