// The inserted citation: two complete strings and nothing else are read, everything else is
// refused; and what the sender writes is what the receiver reads.

#include "Written.h"

#include <Formats/Insertion.h>
#include <Formats/RecordMarkup.h>
#include <Tests/Support/SlowReader.h>

namespace fuzzing {

namespace {

void read(std::string_view payload) {
  const auto insertion = formats::decodeInsertion(payload);
  test_support::SlowReader reader(payload);
  const std::string citation = reader.string();
  const std::string markup = reader.string();
  require(insertion.has_value() == (!reader.isCutShort() && reader.isAtEnd()));
  if (insertion) {
    require(insertion->citation == citation);
    require(insertion->markup == markup);
  } else {
    require(!insertion.error().empty() && insertion.error().find('\n') == std::string::npos);
  }
}

void writeAndRead(FuzzedData data) {
  const std::size_t room = data.byte();
  const std::u16string citation = codeUnits(data.rest());
  const std::u16string markup = formats::recordMarkupForInsertion(citation);
  const std::string payload = written(
      formats::sizeOfInsertion(citation, markup), room,
      [&](formats::PayloadWriter &writer) { formats::writeInsertion(writer, citation, markup); });
  const auto insertion = formats::decodeInsertion(payload);
  require(insertion.has_value());
  require(insertion->citation == asRead(citation));
  require(insertion->markup == asRead(markup));
}

}  // namespace

void run(std::string_view bytes) {
  read(bytes);
  writeAndRead(FuzzedData(bytes));
}

}  // namespace fuzzing
