#include "StrictReader.h"

#include <algorithm>

namespace formats {

std::uint16_t StrictReader::readUInt16(std::string_view field) {
  const std::size_t start = reader_.position();
  const std::uint16_t value = reader_.readUInt16();
  checkNotPastEnd(start, field);
  return value;
}

std::uint32_t StrictReader::readUInt32(std::string_view field) {
  const std::size_t start = reader_.position();
  const std::uint32_t value = reader_.readUInt32();
  checkNotPastEnd(start, field);
  return value;
}

std::string_view StrictReader::readString(std::string_view field) {
  const std::size_t start = reader_.position();
  const std::string_view text = reader_.readString();
  checkNotPastEnd(start, field);
  return text;
}

std::string_view StrictReader::readRest() {
  const std::string_view rest = payload_.substr(payload_.size() - remaining());
  reader_.skip(rest.size());
  return rest;
}

std::size_t StrictReader::remaining() const {
  return payload_.size() - std::min(reader_.position(), payload_.size());
}

void StrictReader::fail(std::string_view what) {
  if (!failed()) {
    error_.append(payloadName_).append(": ").append(what);
  }
}

void StrictReader::expectEnd() {
  if (remaining() > 0) {
    fail("ends at byte " + std::to_string(reader_.position()) + ", but the data at byte " +
         std::to_string(payload_.size()));
  }
}

// A string's missing NUL moves the position past the end, too.
void StrictReader::checkNotPastEnd(std::size_t start, std::string_view field) {
  if (reader_.position() > payload_.size() && !failed()) {
    fail("cut short in the " + std::string(field) + ", which begins at byte " +
         std::to_string(start) + " of " + std::to_string(payload_.size()));
  }
}

}  // namespace formats
