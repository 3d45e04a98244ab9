#include "Commands.h"

#include "ExplainCommand.h"

#include <StandIns/Terminal/Output.h>
#include <StandIns/Terminal/Version.h>

#include <variant>

namespace appleevents {

namespace {

using Done = std::expected<Status, Failure>;

// Runs each kind of command with its own options.
struct Runner {
  Done operator()(const ExplainOptions &options) const { return runExplain(options); }
  Done operator()(const HelpOptions &) const {
    terminal::print(helpText());
    return Status::done;
  }
  Done operator()(const VersionOptions &) const {
    terminal::print(terminal::versionLine("appleevents"));
    return Status::done;
  }
};

}  // namespace

Done run(const Command &command) { return std::visit(Runner(), command); }

}  // namespace appleevents
