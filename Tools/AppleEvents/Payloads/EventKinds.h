// What an event is by its class and its ID: who sends it, and how its data is laid out.
#pragma once

#include <Formats/FourCharacterCode.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace appleevents {

enum class Layout {
  nothing,  // no data, or data that nobody reads
  handshake,
  preferences,
  insertion,
  find,
  preliminaryScan,
  citationResolution,
  scanRequest,  // of a final scan and of a live bibliography
  scanReply,
  cancel,
};

enum class Sender { wordProcessor, host };

struct EventKind {
  formats::FourCharacterCode eventClass = 0;
  formats::FourCharacterCode eventID = 0;
  bool isReply = false;
  Layout layout = Layout::nothing;
  Sender sender = Sender::wordProcessor;
  std::string_view name = {};
};

// Every event of the conversation. Of the replies only the one that has data.
std::span<const EventKind> eventKinds();

// Of a reply, the class and the ID are those of the event that it replies to. Nothing for an event
// that is none of the conversation.
std::optional<EventKind> findEventKind(formats::FourCharacterCode eventClass,
                                       formats::FourCharacterCode eventID, bool isReply);

// 'SCNQ', or 0x00000007 where a character does not print.
std::string inQuotes(formats::FourCharacterCode code);
// Reads what inQuotes writes, also without the quotation marks.
std::optional<formats::FourCharacterCode> readCode(std::string_view text);

}  // namespace appleevents
