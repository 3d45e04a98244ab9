// The process `appleevents`: one command, one exit status, one line where something is wrong.
#include "Commands.h"
#include "Failure.h"
#include "Options.h"

#include <StandIns/Terminal/Output.h>

#include <csignal>

namespace {

int failed(const appleevents::Failure &failure) {
  appleevents::complain(failure.line);
  return static_cast<int>(failure.status);
}

}  // namespace

int main(int argc, char *argv[]) {
  using appleevents::Status;
  // A file that the limits of the user do not allow is a failed write, to be told.
  std::signal(SIGXFSZ, SIG_IGN);
  const auto command = appleevents::parseOptions({argv + (argc > 0 ? 1 : 0), argv + argc});
  if (!command) {
    return failed({Status::wrongUsage, command.error()});
  }
  const auto done = appleevents::run(*command);
  if (!done) {
    return failed(done.error());
  }
  if (!terminal::wasPrinted()) {
    return failed({Status::brokenInput, "cannot write to standard output"});
  }
  return static_cast<int>(*done);
}
