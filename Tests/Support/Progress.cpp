#include "Progress.h"

#include <sstream>

namespace test_support {

std::string withoutProgress(const std::string &told) {
  std::istringstream lines(told);
  std::string rest;
  for (std::string line; std::getline(lines, line);) {
    if (!line.ends_with(" ...")) {
      rest += line + "\n";
    }
  }
  return rest;
}

}  // namespace test_support
