// A process that a test starts, reads a line from and ends.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace platform_test {

class ChildProcess {
 public:
  // Starts the program of that path. It ends with this process at the latest.
  explicit ChildProcess(const std::vector<std::string> &arguments);
  ~ChildProcess();
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;

  // The next line on its standard output; empty when none came in time.
  std::string readLine(std::chrono::milliseconds timeOut = std::chrono::seconds(60));

  // Ends it at once and waits for its end. Harmless when it has ended.
  void end();

  pid_t number() const { return number_; }

 private:
  pid_t number_ = -1;
  int output_ = -1;
};

}  // namespace platform_test
