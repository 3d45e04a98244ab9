// Two answers to the same request, compared field by field.
#pragma once

#include "Recording.h"

#include <Tools/AppleEvents/Payloads/EventKinds.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace appleevents {

struct Comparison {
  // In words, each one line; at most a handful.
  std::vector<std::string> differences;
  // Documents that differ, the recorded one first. No difference: the word processor chooses them.
  std::optional<std::pair<std::uint32_t, std::uint32_t>> documents = std::nullopt;
};

// Of the parameters of an event, or of a reply where the kind is one; nothing for an event that is
// none of the conversation.
Comparison compare(const std::optional<EventKind> &kind,
                   const std::vector<RecordedParameter> &recorded,
                   const std::vector<RecordedParameter> &arrived);

}  // namespace appleevents
