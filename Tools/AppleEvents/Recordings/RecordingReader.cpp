// Each line is taken apart loosely, and then written anew and compared: what was not written by the
// writer, to the letter, is no line of a recording.

#include "RecordingText.h"

#include <Tools/AppleEvents/Payloads/EventKinds.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <utility>

namespace appleevents {

namespace {

using formats::FourCharacterCode;

constexpr auto none = std::string_view::npos;
constexpr std::string_view firstWords = "appleevents recording ";

// A line, taken from its beginning.
class Words {
 public:
  explicit Words(std::string_view line) : rest_(line) {}

  bool take(std::string_view text) {
    const bool isThere = rest_.starts_with(text);
    rest_.remove_prefix(isThere ? text.size() : 0);
    return isThere;
  }

  template <typename Number>
  Number takeNumber() {
    Number number = 0;
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return number;
  }

  // As inQuotes writes it: six characters in quotation marks, or ten digits.
  FourCharacterCode takeCode() {
    const std::size_t size = std::min<std::size_t>(rest_.starts_with('\'') ? 6 : 10, rest_.size());
    const auto code = readCode(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return code.value_or(0);
  }

 private:
  std::string_view rest_;
};

std::optional<RecordedMessage> messageOf(std::string_view line) {
  RecordedMessage message;
  Words words(line);
  if (words.take("event ")) {
    message.number = words.takeNumber<std::size_t>();
    words.take(": ");
    message.from = words.takeCode();
    words.take(" to ");
    message.to = words.takeCode();
    words.take(", ");
    message.eventClass = words.takeCode();
    words.take(" ");
    message.eventID = words.takeCode();
    message.wantsReply = words.take(", wants a reply");
  } else if (words.take("reply to ")) {
    message.kind = RecordedMessage::Kind::reply;
    message.number = words.takeNumber<std::size_t>();
  } else if (words.take("error to ")) {
    message.kind = RecordedMessage::Kind::error;
    message.number = words.takeNumber<std::size_t>();
    words.take(": ");
    message.status = words.takeNumber<std::int32_t>();
  } else if (words.take("activation: ")) {
    message.kind = RecordedMessage::Kind::activation;
    message.from = words.takeCode();
    words.take(" to ");
    message.to = words.takeCode();
  }
  return headLine(message) == line ? std::optional(message) : std::nullopt;
}

std::optional<std::chrono::microseconds> timeOf(std::string_view line) {
  constexpr std::int64_t mostSeconds = 1'000'000'000'000;
  Words words(line);
  words.take("time ");
  const auto seconds = words.takeNumber<std::int64_t>();
  words.take(".");
  // A leading 0 is none of a number to from_chars.
  const auto fraction = words.takeNumber<std::int64_t>();
  if (seconds < 0 || seconds > mostSeconds || fraction < 0) {
    return std::nullopt;
  }
  const std::chrono::microseconds time =
      std::chrono::seconds(seconds) + std::chrono::microseconds(fraction);
  return timeLine(time) == line ? std::optional(time) : std::nullopt;
}

// Without its bytes.
struct ParameterHead {
  RecordedParameter parameter;
  std::size_t size = 0;
};

ParameterHead parameterOf(std::string_view line) {
  ParameterHead head;
  Words words(line);
  words.take("parameter ");
  head.parameter.keyword = words.takeCode();
  words.take(" ");
  head.parameter.type = words.takeCode();
  words.take(", ");
  head.size = words.takeNumber<std::size_t>();
  words.take(" bytes");
  head.parameter.isInMemoryFile = words.take(" in a memory file");
  return head;
}

// The bytes of a line of data; the characters behind them are compared later.
std::string bytesOf(std::string_view line) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string bytes;
  for (std::size_t start = 2; start + 1 < line.size(); start += 3) {
    const std::size_t high = digits.find(line[start]);
    const std::size_t low = digits.find(line[start + 1]);
    if (high == none || low == none) {
      break;
    }
    bytes += static_cast<char>(high << 4 | low);
    // Behind the last byte of a line stand two blanks, or more.
    if (start + 3 < line.size() && line[start + 3] == ' ') {
      break;
    }
  }
  return bytes;
}

class RecordingReader {
 public:
  explicit RecordingReader(std::string_view text) : rest_(text) {}

  std::expected<Recording, std::string> read() {
    if (!readBeginning() || !readMessages()) {
      return std::unexpected(error_);
    }
    return std::move(recording_);
  }

 private:
  // The next line, if there is one and it is whole.
  std::optional<std::string_view> peek() const {
    const std::size_t end = rest_.find('\n');
    return end == none ? std::nullopt : std::optional(rest_.substr(0, end));
  }
  std::optional<std::string_view> next() {
    const auto line = peek();
    if (line) {
      rest_.remove_prefix(line->size() + 1);
      ++lineNumber_;
    }
    return line;
  }

  bool fail(std::string error) {
    error_ = std::move(error);
    return false;
  }
  bool failHere(const std::string &what) {
    return fail("line " + std::to_string(lineNumber_) + ": " + what);
  }
  bool isCutShort() { return fail("it is cut short: its last line is missing"); }
  bool isNoLine() {
    return failHere("no recording has this line here: it was edited or is damaged");
  }

  bool readBeginning() {
    const auto line = next();
    if (!line || !line->starts_with(firstWords)) {
      return fail("it is no recording of appleevents");
    }
    if (std::string(*line) + "\n" != RecordingLines().beginning(false)) {
      return fail("it is a recording of version " + std::string(line->substr(firstWords.size())) +
                  ", and this program reads version " + std::to_string(recordingVersion));
    }
    recording_.isAnonymous = peek() == "anonymous";
    if (recording_.isAnonymous) {
      next();
    }
    lines_.beginning(recording_.isAnonymous);
    return true;
  }

  bool readMessages() {
    for (;;) {
      const auto blank = next();
      const auto head = next();
      if (!blank || !head) {
        return isCutShort();
      }
      if (!blank->empty()) {
        return isNoLine();
      }
      if (head->starts_with("end: ")) {
        return readEnd(*head);
      }
      auto message = messageOf(*head);
      if (!message) {
        return isNoLine();
      }
      if (!checkNumber(*message) || !readTime(*message) || !readParameters(*message)) {
        return false;
      }
      lines_.add(*message);
      recording_.messages.push_back(*std::move(message));
    }
  }

  bool readEnd(std::string_view line) {
    if ("\n" + std::string(line) + "\n" != lines_.end()) {
      return failHere("something above was edited: the numbers of this line are those of another");
    }
    return rest_.empty() || failHere("there is something behind the end");
  }

  bool checkNumber(const RecordedMessage &message) {
    switch (message.kind) {
      case RecordedMessage::Kind::event:
        if (message.wantsReply) {
          unanswered_.insert(message.number);
        }
        return message.number == lines_.events() + 1 ||
               failHere("this should be event " + std::to_string(lines_.events() + 1));
      case RecordedMessage::Kind::reply:
      case RecordedMessage::Kind::error:
        return unanswered_.erase(message.number) == 1 || failHere("no event waits for this");
      case RecordedMessage::Kind::activation:
        return true;
    }
    return true;
  }

  bool readTime(RecordedMessage &message) {
    const auto line = peek();
    if (!line || !line->starts_with("time ")) {
      return true;
    }
    next();
    message.time = timeOf(*line);
    return message.time.has_value() || isNoLine();
  }

  bool readParameters(RecordedMessage &message) {
    const bool mayHaveParameters = message.kind == RecordedMessage::Kind::event ||
                                   message.kind == RecordedMessage::Kind::reply;
    for (auto line = peek(); line && line->starts_with("parameter "); line = peek()) {
      next();
      const std::size_t headNumber = lineNumber_;
      if (!mayHaveParameters) {
        return isNoLine();
      }
      auto [parameter, size] = parameterOf(*line);
      if (!readData(parameter, size)) {
        return false;
      }
      if (parameterLine(parameter) != *line) {
        lineNumber_ = headNumber;
        return failHere("the bytes of this parameter are not those that were recorded");
      }
      message.parameters.push_back(std::move(parameter));
    }
    return true;
  }

  bool readData(RecordedParameter &parameter, std::size_t size) {
    std::vector<std::string_view> lines;
    const std::size_t firstNumber = lineNumber_ + 1;
    while (parameter.bytes.size() < size) {
      const auto line = next();
      if (!line) {
        return isCutShort();
      }
      const std::string bytes = bytesOf(*line);
      if (bytes.empty()) {
        return isNoLine();
      }
      parameter.bytes += bytes;
      lines.push_back(*line);
    }
    const std::vector<std::string> expected = dataLines(parameter.bytes);
    const auto [read, written] = std::ranges::mismatch(lines, expected);
    if (read != lines.end() || written != expected.end()) {
      lineNumber_ = firstNumber + static_cast<std::size_t>(read - lines.begin());
      return isNoLine();
    }
    return true;
  }

  std::string_view rest_;
  std::size_t lineNumber_ = 0;
  // What the writer made of the messages so far.
  RecordingLines lines_;
  std::set<std::size_t> unanswered_;
  Recording recording_;
  std::string error_;
};

}  // namespace

std::expected<Recording, std::string> readRecording(std::string_view text) {
  return RecordingReader(text).read();
}

}  // namespace appleevents
