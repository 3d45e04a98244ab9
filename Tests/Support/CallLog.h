// What the plug-in did, in order: messages to the host, to the application and to the carrier all
// write a line here, so that a test compares one list.
#pragma once

#include <string>
#include <vector>

namespace test_support {

inline std::vector<std::string> &calls() {
  static std::vector<std::string> lines;
  return lines;
}

inline void logCall(std::string line) { calls().push_back(std::move(line)); }

}  // namespace test_support
