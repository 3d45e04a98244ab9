#include "ReplayCommand.h"

#include "Replay.h"
#include "StartedCommand.h"

#include <StandIns/Terminal/Output.h>
#include <Tools/AppleEvents/Commands/ShowCommand.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace appleevents {

namespace {

using terminal::TerminalText;

void print(const ReplayedRequest &request) {
  TerminalText text = "event " + TerminalText::number(request.number) + ", " +
                      TerminalText::inOneLine(request.name) + ": ";
  text += request.differences.empty() ? TerminalText("as recorded\n") : TerminalText("differs\n");
  for (const auto *lines : {&request.differences, &request.remarks}) {
    for (const std::string &line : *lines) {
      text += "  " + TerminalText::inOneLine(line) + "\n";
    }
  }
  terminal::print(text);
}

}  // namespace

std::expected<Status, Failure> runReplay(const ReplayOptions &options) {
  const auto recording = readRecordingFile(options.input);
  if (!recording) {
    return std::unexpected(recording.error());
  }
  if (recording->isAnonymous) {
    complain("the recording is anonymous: what its authors cited is in no library");
  }
  std::unique_ptr<StartedCommand> host;
  if (options.host && HostSession::isHostRunning()) {
    return std::unexpected(
        Failure{Status::unreachable, "a host is running already: --against starts another"});
  }
  if (options.host) {
    auto started = StartedCommand::start(*options.host, StartedCommand::Output::discarded);
    if (!started) {
      return std::unexpected(Failure{Status::wrongUsage, started.error()});
    }
    host = *std::move(started);
  }
  const auto now = HostSession::Clock::now();
  auto session = HostSession::connect(*recording, host == nullptr ? now : now + options.timeout);
  if (!session) {
    return std::unexpected(session.error());
  }
  const auto replayed = replay(*recording, **session, options.timeout);
  std::ranges::for_each(replayed, print);
  const auto differing = std::ranges::count_if(
      replayed, [](const ReplayedRequest &request) { return !request.differences.empty(); });
  terminal::print("replayed: " + TerminalText::number(replayed.size()) + " requests, " +
                  TerminalText::number(differing) + " answered otherwise\n");
  return differing == 0 ? Status::done : Status::differs;
}

}  // namespace appleevents
