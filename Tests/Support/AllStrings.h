// Every string over a small alphabet up to a length: what an exhaustive test runs through.
// The letters of the alphabet may be strings themselves, so that a whole keyword counts
// as one letter.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

// Calls visit(string) for each of them, the empty string first, until an assertion fails.
template <typename Unit, typename Visit>
void forEachString(const std::vector<std::basic_string<Unit>> &letters, std::size_t maximumLength,
                   const Visit &visit, const std::basic_string<Unit> &prefix = {}) {
  visit(prefix);
  if (maximumLength == 0) {
    return;
  }
  for (const auto &letter : letters) {
    if (testing::Test::HasFatalFailure()) {
      return;
    }
    forEachString(letters, maximumLength - 1, visit, prefix + letter);
  }
}
