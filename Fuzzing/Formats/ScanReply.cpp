// The scan reply: what is complete is read like the slow reference reads it, everything else is
// refused; and what the sender writes is what the receiver reads.

#include "Written.h"

#include <Formats/ScanReply.h>
#include <Formats/Unicode.h>
#include <Tests/Support/SlowReader.h>

#include <vector>

namespace fuzzing {

namespace {

struct SlowReply {
  std::uint32_t documentID = 0;
  bool usesSuperscript = false;
  bool hasBibliography = false;
  std::string styleName;
  std::vector<std::string> groups;
  std::string bibliography;
};

std::optional<SlowReply> slowlyRead(std::string_view payload) {
  test_support::SlowReader reader(payload);
  SlowReply reply;
  reader.integer(2);
  reply.documentID = reader.integer(4);
  reader.integer(4);
  reader.integer(1);
  reply.usesSuperscript = reader.integer(1) != 0;
  reply.hasBibliography = reader.integer(1) != 0;
  reader.integer(1);
  reply.styleName = reader.string();
  const std::uint32_t count = reader.integer(4);
  for (std::uint32_t index = 0; index < count && !reader.isCutShort(); ++index) {
    reply.groups.push_back(reader.string());
  }
  if (reply.hasBibliography) {
    reply.bibliography = reader.rest();
  }
  if (reader.isCutShort() || !reader.isAtEnd()) {
    return std::nullopt;
  }
  return reply;
}

void read(std::string_view payload) {
  const auto reply = formats::decodeScanReply(payload);
  const auto expected = slowlyRead(payload);
  require(reply.has_value() == expected.has_value());
  if (!reply) {
    require(!reply.error().empty() && reply.error().find('\n') == std::string::npos);
    return;
  }
  require(reply->documentID == expected->documentID);
  require(reply->usesSuperscript == expected->usesSuperscript);
  require(reply->styleName == expected->styleName);
  require(std::vector<std::string>(reply->groups.begin(), reply->groups.end()) == expected->groups);
  require(reply->bibliography.has_value() == expected->hasBibliography);
  require(reply->bibliography.value_or("") == expected->bibliography);
}

void writeAndRead(FuzzedData data) {
  const std::u16string styleName = data.units();
  formats::ScanReplyHeader header{.documentID = data.number(),
                                  .usesSuperscript = data.flag(),
                                  .hasBibliography = data.flag(),
                                  .styleName = styleName};
  const std::string_view bibliography = header.hasBibliography ? data.text() : std::string_view();
  const std::size_t room = data.byte();
  std::vector<std::u16string> groups;
  while (!data.isAtEnd()) {
    groups.push_back(data.units());
  }
  header.groupCount = static_cast<std::uint32_t>(groups.size());
  std::size_t size =
      formats::scanReplyFixedSize + formats::sizeOfString(styleName) + bibliography.size();
  for (const std::u16string &group : groups) {
    size += formats::sizeOfString(group);
  }
  const std::string payload = written(size, room, [&](formats::PayloadWriter &writer) {
    formats::writeScanReplyHeader(writer, header);
    for (const std::u16string &group : groups) {
      writer.writeString(group);
    }
    writer.writeBytes(bibliography);
  });

  const auto reply = formats::decodeScanReply(payload);
  require(reply.has_value());
  require(reply->documentID == header.documentID);
  require(reply->usesSuperscript == header.usesSuperscript);
  require(reply->styleName == asRead(styleName));
  require(reply->groups.size() == groups.size());
  for (std::size_t index = 0; index < groups.size(); ++index) {
    require(reply->groups[index] == asRead(groups[index]));
  }
  require(reply->bibliography.has_value() == header.hasBibliography);
  require(reply->bibliography.value_or("") == bibliography);
}

}  // namespace

void run(std::string_view bytes) {
  read(bytes);
  writeAndRead(FuzzedData(bytes));
}

}  // namespace fuzzing
