#include "Recording.h"

#include <Formats/EventTable.h>

#include <algorithm>

namespace appleevents {

std::optional<std::string_view> RecordedMessage::directObject() const {
  const auto found =
      std::ranges::find(parameters, formats::directObjectKeyword, &RecordedParameter::keyword);
  return found == parameters.end() ? std::nullopt : std::optional<std::string_view>(found->bytes);
}

const RecordedMessage &Recording::event(std::size_t number) const {
  return *std::ranges::find_if(messages, [&](const RecordedMessage &message) {
    return message.kind == RecordedMessage::Kind::event && message.number == number;
  });
}

}  // namespace appleevents
