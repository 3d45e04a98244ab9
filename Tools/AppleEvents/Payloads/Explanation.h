// What the bytes of an event mean: its fields one behind the other, and what about them is wrong.
#pragma once

#include "EventKinds.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace appleevents {

enum class Content {
  number,
  documentID,
  bytes,      // reserved or unknown ones
  text,       // a style's name
  citation,   // what an author wrote, in the syntax of a citation
  records,    // a citation's record text
  pidginRTF,  // a formatted citation
  rtf,        // a bibliography
};

bool isNumber(Content content);

struct Field {
  std::size_t offset = 0;  // in bytes
  // Bytes that are really there; a text's NUL counts.
  std::size_t size = 0;
  std::string name;
  Content content = Content::number;
  std::uint32_t number = 0;  // of a number and a document ID
  std::string_view bytes;    // of everything else; without the NUL. A view into the payload.
  std::string meaning;       // in words; empty where the value says all. UTF-8 of the payload's.
};

enum class Severity {
  broken,  // against a rule: refused, or read as something else than was meant
  odd,     // taken as it is, but nobody is known to send it
};

struct Finding {
  Severity severity = Severity::broken;
  std::size_t offset = 0;
  std::string line;  // without a full stop
};

struct Explanation {
  EventKind kind;
  std::size_t size = 0;
  // All bytes of the payload, without gap or overlap.
  std::vector<Field> fields;
  std::vector<Finding> findings;
  // What it comes to, in a few words: "document 7, 2 citations". May be empty.
  std::string summary;

  bool isBroken() const;
};

// Takes any bytes. Nothing in place of the payload: the event came without data. The explanation
// has views into the payload.
Explanation explain(const EventKind &kind, std::optional<std::string_view> payload);

// What the payload most likely is, by its bytes alone: the first kind in which nothing is wrong.
std::optional<EventKind> guessKind(std::string_view payload);

}  // namespace appleevents
