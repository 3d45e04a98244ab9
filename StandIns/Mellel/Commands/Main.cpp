// The process `mellel`: one command, one exit status, one line where something is wrong.
#include "Commands.h"
#include "Options.h"

#include <csignal>
#include <iostream>
#include <string>

namespace {

int failed(const mellel::console::Failure &failure) {
  mellel::console::complain(failure);
  return static_cast<int>(failure.status);
}

}  // namespace

int main(int argc, char *argv[]) {
  using mellel::console::Status;
  // A copy that the limits of the user do not allow is a failed write, to be told and cleaned up
  // after.
  std::signal(SIGXFSZ, SIG_IGN);
  const auto options = mellel::commands::parseOptions({argv + 1, argv + argc});
  if (!options) {
    return failed({Status::wrongUsage, options.error()});
  }
  const auto done = mellel::commands::run(*options);
  if (!done) {
    return failed(done.error());
  }
  if (!std::cout.flush()) {
    return failed({Status::brokenDocumentOrReply, "cannot write to standard output"});
  }
  return static_cast<int>(Status::done);
}
