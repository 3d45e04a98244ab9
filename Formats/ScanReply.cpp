#include "ScanReply.h"

#include "StrictReader.h"

namespace formats {

namespace {

constexpr std::uint32_t superscriptFlag = 0x00FF0000;
constexpr std::uint32_t bibliographyFlag = 0x0000FF00;

}  // namespace

void writeScanReplyHeader(PayloadWriter &writer, const ScanReplyHeader &header) {
  writer.writeUInt16(0);
  writer.writeUInt32(header.documentID);
  writer.writeUInt32(0);
  writer.writeUInt32((header.usesSuperscript ? superscriptFlag : 0) |
                     (header.hasBibliography ? bibliographyFlag : 0));
  writer.writeString(header.styleName);
  writer.writeUInt32(header.groupCount);
}

std::expected<ScanReply, std::string> decodeScanReply(std::string_view payload) {
  StrictReader reader(payload, "scan reply");
  ScanReply reply;
  reader.readUInt16("reserved word");
  reply.documentID = reader.readUInt32("document ID");
  reader.readUInt32("reserved field");
  const std::uint32_t flags = reader.readUInt32("flags");
  reply.usesSuperscript = (flags & superscriptFlag) != 0;
  reply.styleName = reader.readString("style name");
  const std::uint32_t groupCount = reader.readUInt32("group count");
  // Every group takes at least its NUL: a count that cannot be true claims no memory.
  if (!reader.failed() && groupCount > reader.remaining()) {
    reader.fail("announces " + std::to_string(groupCount) + " groups, but only " +
                std::to_string(reader.remaining()) + " bytes follow");
  }
  if (!reader.failed()) {
    reply.groups.reserve(groupCount);
  }
  for (std::uint32_t index = 0; index < groupCount && !reader.failed(); ++index) {
    reply.groups.push_back(reader.readString("text of a group"));
  }
  if ((flags & bibliographyFlag) != 0) {
    reply.bibliography = reader.readRest();
  }
  reader.expectEnd();
  if (reader.failed()) {
    return std::unexpected(reader.error());
  }
  return reply;
}

}  // namespace formats
