// Runs a program to its end and gives back all that it said.
#pragma once

#include <string>
#include <vector>

namespace mellel_test {

struct Ended {
  int status = -1;  // -1: ended by a signal, or after a minute by the test
  std::string output;
  std::string error;
};

Ended runProgram(const std::vector<std::string> &arguments);

}  // namespace mellel_test
