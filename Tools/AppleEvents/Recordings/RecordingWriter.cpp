#include "RecordingText.h"

#include <Tools/AppleEvents/Payloads/EventKinds.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace appleevents {

namespace {

constexpr std::size_t bytesInLine = 16;
constexpr std::size_t hexColumns = bytesInLine * 3 - 1;
constexpr std::string_view digits = "0123456789ABCDEF";

std::uint8_t byteOf(char character) { return static_cast<std::uint8_t>(character); }

bool isPrintable(char character) { return character >= ' ' && character <= '~'; }

// A byte of a UTF-8 text, as far as one can tell from one.
bool isOfText(char character) {
  return isPrintable(character) || (byteOf(character) >= 0x80 && byteOf(character) < 0xF5);
}

// CRC-32, as of ISO 3309: enough to notice a hand, not an enemy. Goes on from the sum of what
// stands before the bytes.
std::uint32_t sumOf(std::string_view bytes, std::uint32_t before = 0) {
  constexpr std::uint32_t polynomial = 0xEDB88320;
  static const auto table = [] {
    std::array<std::uint32_t, 256> entries{};
    for (std::uint32_t index = 0; index < entries.size(); ++index) {
      std::uint32_t entry = index;
      for (int bit = 0; bit < 8; ++bit) {
        entry = (entry & 1) != 0 ? entry >> 1 ^ polynomial : entry >> 1;
      }
      entries[index] = entry;
    }
    return entries;
  }();
  std::uint32_t sum = ~before;
  for (const char character : bytes) {
    sum = sum >> 8 ^ table[(sum ^ byteOf(character)) & 0xFF];
  }
  return ~sum;
}

std::string inHex(std::uint32_t number) {
  std::string text;
  for (int shift = 28; shift >= 0; shift -= 4) {
    text += digits[number >> shift & 0xF];
  }
  return text;
}

// A line ends behind the NUL of a text, so that a text that was put in moves no other one.
std::size_t sizeOfLine(std::string_view bytes) {
  const std::size_t most = std::min(bytes.size(), bytesInLine);
  for (std::size_t index = 1; index < most; ++index) {
    if (bytes[index] == '\0' && isOfText(bytes[index - 1])) {
      return index + 1;
    }
  }
  return most;
}

std::string dataLine(std::string_view bytes) {
  std::string line = "  ";
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    line += index == 0 ? "" : " ";
    line += digits[byteOf(bytes[index]) >> 4];
    line += digits[byteOf(bytes[index]) & 0xF];
  }
  line.resize(2 + hexColumns + 2, ' ');
  for (const char character : bytes) {
    line += isPrintable(character) ? character : '.';
  }
  return line;
}

std::string between(const RecordedMessage &message) {
  return inQuotes(message.from) + " to " + inQuotes(message.to);
}

}  // namespace

std::string headLine(const RecordedMessage &message) {
  switch (message.kind) {
    case RecordedMessage::Kind::event:
      return "event " + std::to_string(message.number) + ": " + between(message) + ", " +
             inQuotes(message.eventClass) + ' ' + inQuotes(message.eventID) +
             (message.wantsReply ? ", wants a reply" : "");
    case RecordedMessage::Kind::reply:
      return "reply to " + std::to_string(message.number);
    case RecordedMessage::Kind::error:
      return "error to " + std::to_string(message.number) + ": " + std::to_string(message.status);
    case RecordedMessage::Kind::activation:
      return "activation: " + between(message);
  }
  return {};
}

std::string timeLine(std::chrono::microseconds time) {
  constexpr std::int64_t perSecond = 1'000'000;
  const std::string fraction = std::to_string(time.count() % perSecond + perSecond).substr(1);
  return "time " + std::to_string(time.count() / perSecond) + '.' + fraction;
}

std::string parameterLine(const RecordedParameter &parameter) {
  return "parameter " + inQuotes(parameter.keyword) + ' ' + inQuotes(parameter.type) + ", " +
         std::to_string(parameter.bytes.size()) + " bytes" +
         (parameter.isInMemoryFile ? " in a memory file" : "") + ", sum " +
         inHex(sumOf(parameter.bytes));
}

std::vector<std::string> dataLines(std::string_view bytes) {
  std::vector<std::string> lines;
  while (!bytes.empty()) {
    const std::size_t size = sizeOfLine(bytes);
    lines.push_back(dataLine(bytes.substr(0, size)));
    bytes.remove_prefix(size);
  }
  return lines;
}

std::string RecordingLines::beginning(bool isAnonymous) {
  std::string lines = "appleevents recording " + std::to_string(recordingVersion) + '\n' +
                      (isAnonymous ? "anonymous\n" : "");
  sum_ = sumOf(lines);
  return lines;
}

std::string RecordingLines::add(const RecordedMessage &message) {
  const std::string head = '\n' + headLine(message) + '\n';
  std::string data;
  for (const RecordedParameter &parameter : message.parameters) {
    data += parameterLine(parameter) + '\n';
    for (const std::string &line : dataLines(parameter.bytes)) {
      data += line + '\n';
    }
  }
  events_ += message.kind == RecordedMessage::Kind::event ? 1 : 0;
  ++messages_;
  sum_ = sumOf(data, sumOf(head, sum_));
  return head + (message.time ? timeLine(*message.time) + '\n' : "") + data;
}

std::string RecordingLines::end() const {
  return "\nend: " + std::to_string(events_) + " events, " + std::to_string(messages_) +
         " messages, sum " + inHex(sum_) + '\n';
}

std::string linesOf(const Recording &recording) {
  RecordingLines writer;
  std::string lines = writer.beginning(recording.isAnonymous);
  for (const RecordedMessage &message : recording.messages) {
    lines += writer.add(message);
  }
  return lines + writer.end();
}

}  // namespace appleevents
