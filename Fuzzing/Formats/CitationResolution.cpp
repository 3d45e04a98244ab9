// The answer to a preliminary scan: what is complete is read like the slow reference reads it,
// everything else is refused; and what the sender writes is what the receiver reads.

#include "Written.h"

#include <Formats/CitationResolution.h>
#include <Formats/RecordMarkup.h>
#include <Tests/Support/SlowReader.h>

#include <vector>

namespace fuzzing {

namespace {

void read(std::string_view payload) {
  const auto resolution = formats::decodeCitationResolution(payload);
  test_support::SlowReader reader(payload);
  reader.integer(2);
  const std::uint32_t documentID = reader.integer(4);
  const std::uint32_t count = reader.integer(4);
  std::vector<std::string> texts;
  for (std::uint32_t index = 0; index < count && !reader.isCutShort(); ++index) {
    texts.push_back(reader.string());
    texts.push_back(reader.string());
  }
  require(resolution.has_value() == (!reader.isCutShort() && reader.isAtEnd()));
  if (!resolution) {
    require(!resolution.error().empty() && resolution.error().find('\n') == std::string::npos);
    return;
  }
  require(resolution->documentID == documentID);
  require(resolution->citations.size() == count);
  for (std::size_t index = 0; index < count; ++index) {
    require(resolution->citations[index].citation == texts[2 * index]);
    require(resolution->citations[index].markup == texts[2 * index + 1]);
  }
}

void writeAndRead(FuzzedData data) {
  const std::uint32_t documentID = data.number();
  const std::size_t room = data.byte();
  std::vector<std::u16string> citations;
  std::vector<std::u16string> markups;
  while (!data.isAtEnd()) {
    citations.push_back(data.units());
    markups.push_back(formats::recordMarkupForComponents(citations.back()));
  }
  std::size_t size = formats::citationResolutionFixedSize;
  for (std::size_t index = 0; index < citations.size(); ++index) {
    size += formats::sizeOfString(citations[index]) + formats::sizeOfString(markups[index]);
  }
  const std::string payload = written(size, room, [&](formats::PayloadWriter &writer) {
    formats::writeCitationResolutionHeader(writer, documentID,
                                           static_cast<std::uint32_t>(citations.size()));
    for (std::size_t index = 0; index < citations.size(); ++index) {
      writer.writeString(citations[index]);
      writer.writeString(markups[index]);
    }
  });
  const auto resolution = formats::decodeCitationResolution(payload);
  require(resolution.has_value());
  require(resolution->documentID == documentID);
  require(resolution->citations.size() == citations.size());
  for (std::size_t index = 0; index < citations.size(); ++index) {
    require(resolution->citations[index].citation == asRead(citations[index]));
    require(resolution->citations[index].markup == asRead(markups[index]));
  }
}

}  // namespace

void run(std::string_view bytes) {
  read(bytes);
  writeAndRead(FuzzedData(bytes));
}

}  // namespace fuzzing
