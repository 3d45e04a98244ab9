#include "ShowCommand.h"

#include "InputFile.h"

#include <StandIns/Terminal/Output.h>
#include <Tools/AppleEvents/Payloads/ExplanationText.h>
#include <Tools/AppleEvents/Recordings/Conversation.h>
#include <Tools/AppleEvents/Recordings/ConversationPage.h>
#include <Tools/AppleEvents/Recordings/ConversationText.h>
#include <Tools/AppleEvents/Recordings/RecordingText.h>

#include <algorithm>

namespace appleevents {

namespace {

using Kind = RecordedMessage::Kind;

bool belongsTo(const Turn &turn, std::size_t event) {
  return turn.message->kind != Kind::activation && turn.message->number == event;
}

// The event and its reply, each in full.
std::expected<Status, Failure> showEvent(const std::vector<Turn> &turns,
                                         const ShowOptions &options) {
  Status status = Status::done;
  bool isFound = false;
  for (const Turn &turn : turns) {
    if (!belongsTo(turn, *options.event)) {
      continue;
    }
    if (isFound) {
      terminal::print(terminal::Words("\n"));
    }
    isFound = true;
    if (turn.explanation) {
      terminal::print(explanationText(*turn.explanation));
    } else {
      terminal::print(terminal::TerminalText::inOneLine(headLine(*turn.message)) + "\n");
    }
    status = turn.isBroken() ? Status::differs : status;
  }
  if (!isFound) {
    return std::unexpected(Failure{
        Status::wrongUsage, options.input + " has no event " + std::to_string(*options.event)});
  }
  return status;
}

}  // namespace

std::expected<Recording, Failure> readRecordingFile(const std::string &path) {
  const auto text = readInput(path);
  if (!text) {
    return std::unexpected(text.error());
  }
  auto recording = readRecording(*text);
  if (!recording) {
    return std::unexpected(Failure{
        Status::brokenInput, (path == "-" ? "standard input" : path) + ": " + recording.error()});
  }
  return *std::move(recording);
}

std::expected<Status, Failure> runShow(const ShowOptions &options) {
  const auto recording = readRecordingFile(options.input);
  if (!recording) {
    return std::unexpected(recording.error());
  }
  const std::vector<Turn> turns = turnsOf(*recording);
  if (options.event) {
    return showEvent(turns, options);
  }
  terminal::print(options.asHTML ? conversationPage(*recording) : conversationText(*recording));
  return std::ranges::any_of(turns, &Turn::isBroken) ? Status::differs : Status::done;
}

}  // namespace appleevents
