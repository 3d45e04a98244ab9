#include "ConversationText.h"

#include "RecordingText.h"

#include <Formats/EventTable.h>

#include <algorithm>

namespace appleevents {

using terminal::TerminalText;
using Kind = RecordedMessage::Kind;

namespace {

constexpr std::size_t longestMeaning = 120;  // bytes

// In characters: the arrow between two names is one.
std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char character) { return (static_cast<unsigned char>(character) & 0xC0) != 0x80; }));
}

TerminalText column(std::string_view text, std::size_t width) {
  return TerminalText::inOneLine(text) +
         TerminalText::blanks(width - std::min(width, widthOf(text)));
}

TerminalText rightColumn(std::string_view text, std::size_t width) {
  return TerminalText::blanks(width - std::min(width, widthOf(text))) +
         TerminalText::inOneLine(text);
}

std::string shortened(const std::string &text) {
  if (text.size() <= longestMeaning) {
    return text;
  }
  std::size_t end = longestMeaning;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
    --end;
  }
  return text.substr(0, end) + "…";
}

TerminalText lineOf(const Turn &turn) {
  constexpr std::size_t numberWidth = 4;
  constexpr std::size_t timeWidth = 12;
  constexpr std::size_t processesWidth = 23;
  constexpr std::size_t nameWidth = 28;
  constexpr std::size_t sizeWidth = 9;
  constexpr std::size_t delayWidth = 12;
  const RecordedMessage &message = *turn.message;
  TerminalText line =
      rightColumn(message.kind == Kind::event ? std::to_string(message.number) : "", numberWidth);
  line += rightColumn(message.time ? timeInWords(*message.time) : "", timeWidth) + "  ";
  line += column(processName(turn.from) + " → " + processName(turn.to), processesWidth) + "  ";
  if (message.kind == Kind::activation) {
    return line + TerminalText::inOneLine(nameOf(turn)) + "\n";
  }
  line += column(nameOf(turn), nameWidth);
  line += rightColumn(std::to_string(sizeOf(turn)), sizeWidth);
  const std::string meaning = meaningOf(turn);
  if (turn.delay || !meaning.empty()) {
    line += rightColumn(turn.delay ? "+" + timeInWords(*turn.delay) : "", delayWidth);
  }
  return line +
         (meaning.empty() ? TerminalText() : "  " + TerminalText::inOneLine(shortened(meaning))) +
         "\n";
}

}  // namespace

std::string processName(formats::FourCharacterCode signature) {
  if (signature == formats::mellelSignature) {
    return "word processor";
  }
  if (signature == formats::korvoSignature) {
    return "host";
  }
  return signature == 0 ? "unknown" : inQuotes(signature);
}

std::string timeInWords(std::chrono::microseconds time) {
  constexpr std::int64_t perSecond = 1'000'000;
  constexpr std::int64_t perMillisecond = 1'000;
  // Tenths of a millisecond.
  const std::int64_t unit = time.count() < perSecond ? perMillisecond : perSecond;
  const std::string decimals = std::to_string(time.count() % unit * 1000 / unit + 1000).substr(1);
  return std::to_string(time.count() / unit) + '.' + decimals.substr(0, unit == perSecond ? 3 : 1) +
         (unit == perSecond ? " s" : " ms");
}

std::string nameOf(const Turn &turn) {
  const RecordedMessage &message = *turn.message;
  switch (message.kind) {
    case Kind::event:
      return turn.explanation ? std::string(turn.explanation->kind.name)
                              : inQuotes(message.eventClass) + ' ' + inQuotes(message.eventID);
    case Kind::reply:
      return "reply to " + std::to_string(message.number);
    case Kind::error:
      return "error in reply to " + std::to_string(message.number);
    case Kind::activation:
      return "to the front";
  }
  return {};
}

std::string meaningOf(const Turn &turn) {
  const RecordedMessage &message = *turn.message;
  std::string meaning = turn.isBroken() ? "BROKEN: " + turn.explanation->findings.front().line : "";
  const auto add = [&](const std::string &words) {
    meaning += (meaning.empty() || words.empty() ? "" : ", ") + words;
  };
  if (message.kind == Kind::event && turn.answers) {
    add("answers " + std::to_string(*turn.answers));
  }
  if (message.kind == Kind::error) {
    add("status " + std::to_string(message.status));
  }
  if (turn.explanation && !(message.kind == Kind::reply && message.parameters.empty())) {
    add(turn.explanation->summary);
  }
  return meaning;
}

std::size_t sizeOf(const Turn &turn) {
  std::size_t size = 0;
  for (const RecordedParameter &parameter : turn.message->parameters) {
    size += parameter.bytes.size();
  }
  return size;
}

terminal::TerminalText conversationText(const Recording &recording) {
  TerminalText text;
  for (const Turn &turn : turnsOf(recording)) {
    text += lineOf(turn);
  }
  return text;
}

}  // namespace appleevents
