// Running the test's own run loop until something has happened.
#pragma once

#include <chrono>
#include <functional>

namespace test_support {

// True as soon as the condition is; false when it was not in time.
bool runUntil(const std::function<bool()> &condition,
              std::chrono::milliseconds timeOut = std::chrono::seconds(20));

}  // namespace test_support
