#include "Commands.h"

#include "BusCommands.h"
#include "ExplainCommand.h"
#include "Failure.h"
#include "Options.h"
#include "ShowCommand.h"

#include <StandIns/Terminal/Output.h>
#include <StandIns/Terminal/Version.h>

#include <expected>
#include <variant>

namespace appleevents {

namespace {

using Done = std::expected<Status, Failure>;

// Runs each kind of command with its own options.
struct Runner {
  Done operator()(const ExplainOptions &options) const { return runExplain(options); }
  Done operator()(const RecordOptions &options) const { return record(options); }
  Done operator()(const ShowOptions &options) const { return runShow(options); }
  Done operator()(const ReplayOptions &options) const { return replay(options); }
  Done operator()(const HelpOptions &) const {
    terminal::print(helpText());
    return Status::done;
  }
  Done operator()(const VersionOptions &) const {
    terminal::print(terminal::versionLine("appleevents"));
    return Status::done;
  }
};

int failed(const Failure &failure) {
  complain(failure.line);
  return static_cast<int>(failure.status);
}

}  // namespace

int run(int count, const char *const *arguments) {
  const auto command = parseOptions({arguments + (count > 0 ? 1 : 0), arguments + count});
  if (!command) {
    return failed({Status::wrongUsage, command.error()});
  }
  const Done done = std::visit(Runner(), *command);
  if (!done) {
    return failed(done.error());
  }
  if (!terminal::wasPrinted()) {
    return failed({Status::brokenInput, "cannot write to standard output"});
  }
  return static_cast<int>(*done);
}

}  // namespace appleevents
