#include "ExplainCommand.h"

#include "InputFile.h"

#include <StandIns/Terminal/Output.h>
#include <Tools/AppleEvents/Payloads/EventInput.h>
#include <Tools/AppleEvents/Payloads/ExplanationText.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace appleevents {

namespace {

std::unexpected<Failure> broken(const ExplainOptions &options, const std::string &line) {
  const std::string name = options.input == "-" ? "standard input" : options.input;
  return std::unexpected(Failure{Status::brokenInput, name + ": " + line});
}

std::string codesOf(formats::FourCharacterCode eventClass, formats::FourCharacterCode eventID) {
  return inQuotes(eventClass) + ' ' + inQuotes(eventID);
}

// What is asked for wins over what the input says, and that over a guess.
std::expected<EventKind, std::string> kindOf(const EventInput &event,
                                             const ExplainOptions &options) {
  const auto eventClass = options.eventClass ? options.eventClass : event.eventClass;
  const auto eventID = options.eventID ? options.eventID : event.eventID;
  if (eventClass && eventID) {
    const auto kind = findEventKind(*eventClass, *eventID, options.isReply);
    if (!kind) {
      return std::unexpected("there is no " +
                             std::string(options.isReply ? "reply to " : "event ") +
                             codesOf(*eventClass, *eventID) + " in this conversation");
    }
    return *kind;
  }
  const auto guessed = guessKind(event.payload.value_or(""));
  if (!guessed) {
    return std::unexpected("these bytes are no event as it should be: say its class and ID");
  }
  return *guessed;
}

}  // namespace

std::expected<Status, Failure> runExplain(const ExplainOptions &options) {
  const auto bytes = readInput(options.input);
  if (!bytes) {
    return std::unexpected(bytes.error());
  }
  const auto events = readEventInput(*bytes, options.form);
  if (!events) {
    return broken(options, events.error());
  }
  Status status = Status::done;
  bool isFirst = true;
  for (const EventInput &event : *events) {
    const auto kind = kindOf(event, options);
    if (!kind) {
      return broken(options, kind.error());
    }
    Explanation explanation = explain(*kind, event.payload);
    if (!event.gap.empty()) {
      explanation.findings.insert(explanation.findings.begin(),
                                  {Severity::broken, explanation.size, event.gap});
    }
    if (!options.asJSON && !std::exchange(isFirst, false)) {
      terminal::print(terminal::Words("\n"));
    }
    terminal::print(options.asJSON ? explanationJSON(explanation) : explanationText(explanation));
    status = explanation.isBroken() ? Status::differs : status;
  }
  return status;
}

}  // namespace appleevents
