// An event in a log looks like this:
//
//   ------oo start of event oo------
//   { 1 } 'aevt':  mLeL/FNDN (****){
//             return id: 22609967 (0x159002f)
//     event data:
//       { 1 } 'aevt':  - 1 items {
//         key '----' -
//           { 1 } 'TEXT':  8 bytes {
//             "Smith#A"
//           }
//       }
//   }
//   ------oo  end of event  oo------
//
// Descriptors also stand above "event data:", as the target and the optional attributes.

#include "EventLog.h"

#include "EventKinds.h"
#include "HexReader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <utility>

namespace appleevents {

namespace {

constexpr auto none = std::string_view::npos;
constexpr std::string_view eventMark = "'aevt':";

std::string_view takeLine(std::string_view &text) {
  std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  const std::size_t start = line.find_first_not_of(" \t\r");
  if (start == none) {
    return {};
  }
  return line.substr(start, line.find_last_not_of(" \t\r") - start + 1);
}

// The class and the ID of "{ 1 } 'aevt':  mLeL/SCNQ (ppc ){".
std::optional<EventInput> eventOfLine(std::string_view line) {
  constexpr std::size_t codeLength = 4;
  const std::size_t mark = line.find(eventMark);
  if (mark == none) {
    return std::nullopt;
  }
  line.remove_prefix(mark + eventMark.size());
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  if (line.size() < 2 * codeLength + 1 || line[codeLength] != '/') {
    return std::nullopt;
  }
  EventInput event;
  event.eventClass = readCode(line.substr(0, codeLength));
  event.eventID = readCode(line.substr(codeLength + 1, codeLength));
  return event.eventClass && event.eventID ? std::optional(event) : std::nullopt;
}

// The number of "'TEXT':  45 bytes {".
std::optional<std::size_t> sizeOfLine(std::string_view line) {
  const std::size_t word = line.find(" bytes {");
  if (word == none) {
    return std::nullopt;
  }
  const std::size_t start = line.find_last_not_of("0123456789", word - 1) + 1;
  std::size_t size = 0;
  const auto [stop, error] = std::from_chars(line.data() + start, line.data() + word, size);
  return error == std::errc() && stop == line.data() + word ? std::optional(size) : std::nullopt;
}

class LogReader {
 public:
  explicit LogReader(std::string_view log) : rest_(log) {}

  std::expected<std::vector<EventInput>, std::string> read() {
    while (!rest_.empty()) {
      const std::string_view line = takeLine(rest_);
      if (auto event = eventOfLine(line)) {
        events_.push_back(*std::move(event));
        isData_ = false;
      } else if (line.starts_with("event data:")) {
        isData_ = true;
      } else if (isData_ && line.starts_with("key '----'") && !events_.empty()) {
        if (const std::string error = readDirectObject(events_.back()); !error.empty()) {
          return std::unexpected("event " + std::to_string(events_.size()) +
                                 " of the log: " + error);
        }
      }
    }
    return std::move(events_);
  }

 private:
  // The error, or nothing.
  std::string readDirectObject(EventInput &event) {
    const auto announced = sizeOfLine(takeLine(rest_));
    if (!announced) {
      return "its direct object has no size";
    }
    std::string shown;
    bool isClosed = false;
    while (!rest_.empty() && !isClosed) {
      const std::string_view line = takeLine(rest_);
      isClosed = line == "}";
      if (!isClosed) {
        shown.append(line).append("\n");
      }
    }
    if (!isClosed) {
      return "it is cut short";
    }
    if (shown.starts_with('"')) {
      const std::size_t end = shown.rfind('"');
      event.payload = shown.substr(1, std::max<std::size_t>(end, 1) - 1);
      // The NUL at the end does not show.
      if (event.payload->size() + 1 == *announced) {
        *event.payload += '\0';
      }
    } else if (*announced == 0) {
      event.payload = "";
    } else {
      auto bytes = readHex(shown);
      if (!bytes) {
        return bytes.error();
      }
      event.payload = *std::move(bytes);
    }
    if (event.payload->size() != *announced) {
      event.gap = "the log shows " + std::to_string(event.payload->size()) + " of " +
                  std::to_string(*announced) + " bytes";
    }
    return {};
  }

  std::string_view rest_;
  std::vector<EventInput> events_;
  bool isData_ = false;
};

// The bytes between two marks; nothing where the marks are not there or stand around anything else.
std::optional<std::string> bytesBetween(std::string_view text, std::string_view before,
                                        std::size_t codeLength, std::string_view after) {
  const std::size_t start = text.find(before);
  if (start == none) {
    return std::nullopt;
  }
  const std::size_t digits = start + before.size() + codeLength;
  const std::size_t end = text.find(after, std::min(digits, text.size()));
  if (end == none) {
    return std::nullopt;
  }
  if (end == digits) {
    return "";
  }
  auto bytes = readHex(text.substr(digits, end - digits));
  return bytes ? std::optional(*std::move(bytes)) : std::nullopt;
}

}  // namespace

bool looksLikeEventLog(std::string_view text) {
  while (!text.empty()) {
    if (eventOfLine(takeLine(text))) {
      return true;
    }
  }
  return false;
}

std::expected<std::vector<EventInput>, std::string> readEventLog(std::string_view log) {
  return LogReader(log).read();
}

std::optional<EventInput> readScriptData(std::string_view text) {
  constexpr std::size_t codeLength = 4;
  constexpr std::string_view eventWord = "«event ";
  EventInput event;
  event.payload = bytesBetween(text, "«data ", codeLength, "»");
  if (!event.payload) {
    event.payload = bytesBetween(text, "($", 0, "$)");
  }
  if (!event.payload) {
    return std::nullopt;
  }
  // «event mLeLSCNQ», or 'mLeL'\'SCNQ'{…}, or mLeL\SCNQ{…}.
  std::string plain(text);
  std::erase(plain, '\'');
  if (const std::size_t start = text.find(eventWord); start != none) {
    event.eventClass = readCode(text.substr(start + eventWord.size()).substr(0, codeLength));
    event.eventID =
        readCode(text.substr(start + eventWord.size()).substr(codeLength).substr(0, codeLength));
  } else if (const std::size_t slash = plain.find('\\'); slash != none && slash >= codeLength) {
    event.eventClass = readCode(plain.substr(slash - codeLength, codeLength));
    event.eventID = readCode(plain.substr(slash + 1, codeLength));
  }
  return event;
}

}  // namespace appleevents
