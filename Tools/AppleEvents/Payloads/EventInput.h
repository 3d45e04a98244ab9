// What somebody has of an event: its bytes, its bytes written down, or a log of macOS.
#pragma once

#include <Formats/FourCharacterCode.h>

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace appleevents {

struct EventInput {
  // Where the input names them.
  std::optional<formats::FourCharacterCode> eventClass = std::nullopt;
  std::optional<formats::FourCharacterCode> eventID = std::nullopt;
  // Nothing for an event of a log that has no direct object.
  std::optional<std::string> payload = std::nullopt;
  // What the log left out of the payload, in words; empty where it is whole.
  std::string gap = {};
};

enum class InputForm { asFound, bytes, hexadecimal };

// One event, or those of a log. The error is one line.
//
// As found: what holds control characters is bytes. Text is hexadecimal (HexReader.h), or the log
// that a program writes on macOS when AEDebugSends or AEDebugReceives is set in its environment, or
// an event in AppleScript's way of writing one («data TEXT0007»).
std::expected<std::vector<EventInput>, std::string> readEventInput(std::string_view input,
                                                                   InputForm form);

}  // namespace appleevents
