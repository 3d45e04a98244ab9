// A program that the tool starts and that belongs to it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace appleevents {

class StartedCommand {
 public:
  enum class Output { shown, discarded };  // of its standard output

  // Found in PATH where the name has no slash. With the signals that this process blocks let
  // through. The error is one line.
  static std::expected<std::unique_ptr<StartedCommand>, std::string> start(
      const std::vector<std::string> &command, Output output);
  // Ends the program if it still runs: politely, and after two seconds by force.
  ~StartedCommand();
  StartedCommand(const StartedCommand &) = delete;
  StartedCommand &operator=(const StartedCommand &) = delete;
  StartedCommand(StartedCommand &&) = delete;
  StartedCommand &operator=(StartedCommand &&) = delete;

  // The exit status, or 128 and the number of the signal that ended it; nothing while it runs.
  std::optional<int> status();

 private:
  explicit StartedCommand(pid_t process) : process_(process) {}

  pid_t process_;
  std::optional<int> status_;
};

}  // namespace appleevents
