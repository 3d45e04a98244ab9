// A program that a test runs, watches and ends.
//
// What it prints goes to two files: it never waits for its reader, and a test can look at all of it
// at any time. Waiting is always bounded, and the program outlives neither its object nor the test.
#pragma once

#include "TemporaryDirectory.h"

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace test_support {

// Sanitizers and loaded machines are slow; a wait that ends well is as short as what it waits for.
constexpr std::chrono::seconds patience{60};

class ChildProcess {
 public:
  // Starts arguments[0], found in PATH when it holds no slash. Throws std::system_error if it
  // cannot.
  explicit ChildProcess(const std::vector<std::string> &arguments);
  // Kills the program if it still runs. What it wrote to its standard error and nobody asked for
  // goes to that of the test: it may be the report of a sanitizer.
  ~ChildProcess();
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;

  std::string standardOutput() const;
  std::string standardError() const;
  // The number of the process.
  pid_t number() const { return number_; }
  // The processor time of its whole life, once it was waited for.
  double processorSeconds() const { return processorSeconds_; }

  bool isRunning();
  void send(int signal);
  // Sends SIGSTOP and waits until it stands still, all its threads. Harmless when it has ended.
  void stop();
  // Kills it and waits for its end. Harmless when it has ended.
  void end();
  // The exit status; 128 plus the signal's number for a program that a signal ended; nothing if it
  // still runs when the time is over.
  std::optional<int> waitForExit(std::chrono::milliseconds limit = patience);
  // True once a line of standard output begins with the text; false when the time is over or the
  // program has ended without it. Lines before the offset (in bytes) do not count.
  bool waitForLine(const std::string &beginning, std::size_t offset = 0,
                   std::chrono::milliseconds limit = patience);
  // The next line of standard output that this function has not returned yet; empty when none came
  // in time, or before the program's end.
  std::string readLine(std::chrono::milliseconds limit = patience);

 private:
  TemporaryDirectory files_;
  pid_t number_ = 0;
  std::optional<int> status_;
  double processorSeconds_ = 0;
  std::size_t nextLine_ = 0;  // where readLine goes on in the output
  mutable bool errorsWereRead_ = false;
};

struct Result {
  int status;  // 124 if the program was still running when the time was over
  std::string standardOutput;
  std::string standardError;
  double processorSeconds = 0;
};

// Runs a program to its end and gives back all that it said.
Result run(const std::vector<std::string> &arguments, std::chrono::milliseconds limit = patience);

}  // namespace test_support
