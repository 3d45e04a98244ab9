#include "EventInput.h"

#include "EventLog.h"
#include "HexReader.h"

#include <algorithm>

namespace appleevents {

namespace {

// Text has line ends and tabs, and no other control characters. Every payload but a citation to
// find has some.
bool isText(std::string_view input) {
  return std::ranges::none_of(input, [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return (byte < ' ' && character != '\n' && character != '\r' && character != '\t') ||
           byte == 0x7F;
  });
}

}  // namespace

std::expected<std::vector<EventInput>, std::string> readEventInput(std::string_view input,
                                                                   InputForm form) {
  if (form == InputForm::bytes || (form == InputForm::asFound && !isText(input))) {
    return std::vector{EventInput{.payload = std::string(input)}};
  }
  if (form == InputForm::asFound && looksLikeEventLog(input)) {
    return readEventLog(input);
  }
  if (form == InputForm::asFound) {
    if (auto data = readScriptData(input)) {
      return std::vector{*std::move(data)};
    }
  }
  auto bytes = readHex(input);
  if (!bytes) {
    return std::unexpected(bytes.error());
  }
  return std::vector{EventInput{.payload = *std::move(bytes)}};
}

}  // namespace appleevents
