// How much of what could be tried for ever a test tries. Code that the sanitizers watch takes ten
// times as long, and a fault that they see is the same in one of many inputs that are alike: there
// a test tries fewer of them.
#pragma once

namespace test_support {

// The first number; the second where the sanitizers watch.
template <typename Number>
constexpr Number effort(Number whole, [[maybe_unused]] Number underSanitizers) {
  return SANITIZED ? underSanitizers : whole;
}

}  // namespace test_support
