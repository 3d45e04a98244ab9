// What a recording comes to: each message with its meaning, and which request it answers.
#pragma once

#include "Recording.h"

#include <Tools/AppleEvents/Payloads/Explanation.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace appleevents {

struct Turn {
  const RecordedMessage *message = nullptr;
  // Signatures of the processes; of a reply those of its event the other way round.
  formats::FourCharacterCode from = 0;
  formats::FourCharacterCode to = 0;
  // Of an event and a reply that belong to the conversation.
  std::optional<Explanation> explanation = std::nullopt;
  // The number of the request that an event answers, and that a reply or an error belongs to.
  std::optional<std::size_t> answers = std::nullopt;
  // Since that request, where both have a time.
  std::optional<std::chrono::microseconds> delay = std::nullopt;

  bool isBroken() const { return explanation && explanation->isBroken(); }
};

// In the order of the recording, of which they have views.
std::vector<Turn> turnsOf(const Recording &recording);

// Whether an event of that kind may be the answer to a request of the other kind.
bool answers(const EventKind &answer, const EventKind &request);

// The document that a payload is about, as far as it says so.
std::optional<std::uint32_t> documentOf(const Explanation &explanation);

}  // namespace appleevents
