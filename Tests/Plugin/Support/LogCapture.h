// The lines that NSLog writes while an object of this class lives, without time and process.
#pragma once

#include <string>
#include <vector>

namespace plugin_test {

class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture &) = delete;
  LogCapture &operator=(const LogCapture &) = delete;

  const std::vector<std::string> &lines() const;
};

}  // namespace plugin_test
