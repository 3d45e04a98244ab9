// How a command ends.
#pragma once

#include <string>
#include <string_view>

namespace appleevents {

// The process's exit statuses.
enum class Status : int {
  done = 0,
  // A rule is broken, or a replay differs: the command has done its work, and that is the outcome.
  differs = 1,
  wrongUsage = 2,
  // No session bus, no host, or another word processor in the way.
  unreachable = 3,
  // A file cannot be read or written, or holds what the command cannot make sense of.
  brokenInput = 4,
};

struct Failure {
  Status status = Status::brokenInput;
  // For standard error: one line, without a full stop.
  std::string line;
};

// Writes the line to standard error, behind the program's name.
void complain(std::string_view line);

}  // namespace appleevents
