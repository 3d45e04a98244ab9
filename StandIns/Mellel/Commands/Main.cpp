// The process `mellel`: one command, one exit status, one line where something is wrong.
#include "Commands.h"
#include "Options.h"

#include <Platform/WithoutCocoa/LogOutput.h>
#include <StandIns/Terminal/Output.h>

#include <csignal>
#include <string_view>

namespace {

int failed(const mellel::console::Failure &failure) {
  mellel::console::complain(failure);
  return static_cast<int>(failure.status);
}

void log(std::string_view line) {
  terminal::printError("mellel: " + terminal::TerminalText::inOneLine(line) + "\n");
}

}  // namespace

int main(int argc, char *argv[]) {
  using mellel::console::Status;
  // A copy that the limits of the user do not allow is a failed write, to be told and cleaned up
  // after.
  std::signal(SIGXFSZ, SIG_IGN);
  platform::sendLogTo(log);
  const auto options = mellel::commands::parseOptions({argv + 1, argv + argc});
  if (!options) {
    return failed({Status::wrongUsage, options.error()});
  }
  const auto done = mellel::commands::run(*options);
  if (!done) {
    return failed(done.error());
  }
  if (!terminal::wasPrinted()) {
    return failed({Status::brokenDocumentOrReply, "cannot write to standard output"});
  }
  return static_cast<int>(Status::done);
}
