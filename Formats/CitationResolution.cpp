#include "CitationResolution.h"

#include "StrictReader.h"

namespace formats {

void writeCitationResolutionHeader(PayloadWriter &writer, std::uint32_t documentID,
                                   std::uint32_t citationCount) {
  writer.writeUInt16(0);
  writer.writeUInt32(documentID);
  writer.writeUInt32(citationCount);
}

std::expected<CitationResolution, std::string> decodeCitationResolution(std::string_view payload) {
  StrictReader reader(payload, "citation resolution");
  CitationResolution resolution;
  reader.readUInt16("reserved word");
  resolution.documentID = reader.readUInt32("document ID");
  const std::uint32_t count = reader.readUInt32("citation count");
  // Every entry takes at least its two NULs: a count that cannot be true claims no memory.
  if (!reader.failed() && count > reader.remaining() / 2) {
    reader.fail("announces " + std::to_string(count) + " citations, but only " +
                std::to_string(reader.remaining()) + " bytes follow");
  }
  if (!reader.failed()) {
    resolution.citations.reserve(count);
  }
  for (std::uint32_t index = 0; index < count && !reader.failed(); ++index) {
    const std::string_view citation = reader.readString("text of a citation");
    const std::string_view markup = reader.readString("records of a citation");
    resolution.citations.push_back({citation, markup});
  }
  reader.expectEnd();
  if (reader.failed()) {
    return std::unexpected(reader.error());
  }
  return resolution;
}

}  // namespace formats
