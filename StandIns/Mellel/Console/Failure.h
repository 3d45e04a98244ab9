// Why a command ends without having done its work.
#pragma once

#include <string>
#include <string_view>

namespace mellel::console {

// The process's exit statuses.
enum class Status : int {
  done = 0,
  cancelledByHost = 1,
  wrongUsage = 2,
  noHost = 3,
  brokenDocumentOrReply = 4,
  // Everything was done, but not for every citation.
  notAllFound = 5
};

struct Failure {
  Status status = Status::brokenDocumentOrReply;
  // For standard error: one line, without a full stop.
  std::string line;
};

// Writes the line to standard error, behind the program's name.
void complain(const Failure &failure);

// Likewise something that the user should know, though nothing has failed.
void remark(std::string_view line);

}  // namespace mellel::console
