// A program that a test runs, watches and ends.
//
// What it prints goes to two files: it never waits for its reader, and a test can look at all of it
// at any time. Waiting is always bounded, and the program does not outlive its object.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace endtoend {

// A directory of its own for each test, gone with its object.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory &) = delete;
  TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;
  const std::filesystem::path &path() const { return path_; }

 private:
  std::filesystem::path path_;
};

std::string readFile(const std::filesystem::path &path);
void writeFile(const std::filesystem::path &path, const std::string &bytes);

// Sanitizers and loaded machines are slow; a wait that ends well is as short as what it waits for.
constexpr std::chrono::seconds patience{60};

class ChildProcess {
 public:
  // Starts arguments[0], found in PATH when it holds no slash. Throws std::system_error if it
  // cannot.
  explicit ChildProcess(const std::vector<std::string> &arguments);
  // Kills the program if it still runs.
  ~ChildProcess();
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;

  std::string standardOutput() const { return readFile(files_.path() / "out"); }
  std::string standardError() const { return readFile(files_.path() / "err"); }
  pid_t pid() const { return pid_; }

  bool isRunning();
  void send(int signal);
  // The exit status; 128 plus the signal's number for a program that a signal ended; nothing if it
  // still runs when the time is over.
  std::optional<int> waitForExit(std::chrono::milliseconds limit = patience);
  // True once a line of standard output begins with the text; false when the time is over or the
  // program has ended without it. Lines before the offset (in bytes) do not count.
  bool waitForLine(const std::string &beginning, std::size_t offset = 0,
                   std::chrono::milliseconds limit = patience);

 private:
  TemporaryDirectory files_;
  pid_t pid_ = 0;
  std::optional<int> status_;
};

struct Result {
  int status;  // 124 if the program was still running when patience ended
  std::string standardOutput;
  std::string standardError;
};

Result run(const std::vector<std::string> &arguments);

}  // namespace endtoend
