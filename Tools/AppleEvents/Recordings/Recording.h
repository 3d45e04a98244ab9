// A conversation as it was recorded: what travelled between processes with signatures, in order.
#pragma once

#include <Formats/FourCharacterCode.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace appleevents {

struct RecordedParameter {
  formats::FourCharacterCode keyword = 0;
  formats::FourCharacterCode type = 0;
  std::string bytes;
  // Large data travels beside its message, not in it.
  bool isInMemoryFile = false;

  bool operator==(const RecordedParameter &) const = default;
};

struct RecordedMessage {
  enum class Kind {
    event,
    reply,
    error,       // in place of a reply
    activation,  // the sender wants the receiver in front
  };

  Kind kind = Kind::event;
  // Of the event, from 1; of a reply and an error that of the event they belong to.
  std::size_t number = 0;
  // Signatures, of an event and an activation. 0: the sender has none.
  formats::FourCharacterCode from = 0;
  formats::FourCharacterCode to = 0;
  // Of an event.
  formats::FourCharacterCode eventClass = 0;
  formats::FourCharacterCode eventID = 0;
  bool wantsReply = false;
  // Of an error: below 0.
  std::int32_t status = 0;
  // Since the recording began. Nothing where it was left out.
  std::optional<std::chrono::microseconds> time = std::nullopt;
  // Of an event and a reply.
  std::vector<RecordedParameter> parameters = {};

  // The bytes of the parameter '----'.
  std::optional<std::string_view> directObject() const;

  bool operator==(const RecordedMessage &) const = default;
};

struct Recording {
  // What authors wrote was replaced by look-alikes.
  bool isAnonymous = false;
  std::vector<RecordedMessage> messages;

  // The event with the number, which has to be there.
  const RecordedMessage &event(std::size_t number) const;

  bool operator==(const Recording &) const = default;
};

}  // namespace appleevents
