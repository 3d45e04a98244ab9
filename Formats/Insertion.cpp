#include "Insertion.h"

#include "StrictReader.h"

namespace formats {

std::size_t sizeOfInsertion(std::u16string_view citation, std::u16string_view markup) {
  return sizeOfString(citation) + sizeOfString(markup);
}

void writeInsertion(PayloadWriter &writer, std::u16string_view citation,
                    std::u16string_view markup) {
  writer.writeString(citation);
  writer.writeString(markup);
}

std::expected<Insertion, std::string> decodeInsertion(std::string_view payload) {
  StrictReader reader(payload, "insertion");
  Insertion insertion;
  insertion.citation = reader.readString("text of the citation");
  insertion.markup = reader.readString("record of the citation");
  reader.expectEnd();
  if (reader.failed()) {
    return std::unexpected(reader.error());
  }
  return insertion;
}

}  // namespace formats
