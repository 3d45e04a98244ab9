// The scan reply buffer: formatted citations, the style's name and property, and the
// bibliography. Payload of 'SCNR' and of the reply to 'LVBQ'.
//
// The sender sizes the buffer exactly before it allocates it: start from
// scanReplyFixedSize, add sizeOfString for the style's name and each group and the bytes of
// the bibliography. The layout is drawn in Documentation/WireFormats.md.
#pragma once

#include "PayloadWriter.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace formats {

inline constexpr std::size_t scanReplyFixedSize = 18;

struct ScanReplyHeader {
  std::uint32_t documentID = 0;
  bool usesSuperscript = false;
  bool hasBibliography = false;
  std::u16string_view styleName = {};
  std::uint32_t groupCount = 0;
};

// Writes all that comes before the first group. The sender then writes each group with
// writeString and the bibliography, if any, with writeBytes.
void writeScanReplyHeader(PayloadWriter &writer, const ScanReplyHeader &header);

// What the word processor reads. Texts are UTF-8 views into the payload.
struct ScanReply {
  std::uint32_t documentID = 0;
  bool usesSuperscript = false;
  std::string_view styleName;
  std::vector<std::string_view> groups;          // pidgin RTF
  std::optional<std::string_view> bibliography;  // RTF bytes
};

// Unlike a request, a reply that is cut short is refused, with one line that says where: a
// document must not be rewritten from half an answer.
std::expected<ScanReply, std::string> decodeScanReply(std::string_view payload);

}  // namespace formats
