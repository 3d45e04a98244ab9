#include "SmallMessages.h"

#include "PayloadReader.h"
#include "PayloadWriter.h"
#include "StrictReader.h"

namespace formats {

std::array<char, 14> encodePreferences() {
  std::array<char, 14> payload;
  PayloadWriter writer(payload);
  for (const std::uint16_t field : preferenceFields) {
    writer.writeUInt16(field);
  }
  return payload;
}

std::expected<std::array<std::uint16_t, 7>, std::string> decodePreferences(
    std::string_view payload) {
  StrictReader reader(payload, "preferences");
  std::array<std::uint16_t, 7> fields;
  for (std::uint16_t &field : fields) {
    field = reader.readUInt16("fields");
  }
  reader.expectEnd();
  if (reader.failed()) {
    return std::unexpected(reader.error());
  }
  return fields;
}

std::array<char, 6> encodeCancel(std::uint64_t documentID) {
  std::array<char, 6> payload;
  PayloadWriter writer(payload);
  writer.writeUInt16(0);
  writer.writeUInt32(static_cast<std::uint32_t>(documentID));
  return payload;
}

std::expected<std::uint32_t, std::string> decodeCancel(std::string_view payload) {
  StrictReader reader(payload, "cancel");
  reader.readUInt16("reserved word");
  const std::uint32_t documentID = reader.readUInt32("document ID");
  reader.expectEnd();
  if (reader.failed()) {
    return std::unexpected(reader.error());
  }
  return documentID;
}

Handshake decodeHandshake(std::string_view payload) {
  PayloadReader reader(payload);
  Handshake handshake;
  handshake.first = reader.readUInt16();
  handshake.second = reader.readUInt16();
  return handshake;
}

std::array<char, 4> encodeHandshake(const Handshake &handshake) {
  std::array<char, 4> payload;
  PayloadWriter writer(payload);
  writer.writeUInt16(handshake.first);
  writer.writeUInt16(handshake.second);
  return payload;
}

}  // namespace formats
