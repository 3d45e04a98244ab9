#include "PayloadReader.h"

#include <algorithm>
#include <limits>

namespace formats {

std::uint8_t PayloadReader::readUInt8() {
  const std::uint8_t value = atEnd() ? 0 : static_cast<std::uint8_t>(payload_[position_]);
  skip(1);
  return value;
}

std::uint16_t PayloadReader::readUInt16() {
  const unsigned high = readUInt8();
  return static_cast<std::uint16_t>(high << 8 | readUInt8());
}

std::uint32_t PayloadReader::readUInt32() {
  const std::uint32_t high = readUInt16();
  return high << 16 | readUInt16();
}

void PayloadReader::skip(std::size_t bytes) {
  position_ += std::min(bytes, std::numeric_limits<std::size_t>::max() - position_);
}

std::string_view PayloadReader::readString() {
  const std::string_view rest = payload_.substr(std::min(position_, payload_.size()));
  const std::string_view text = rest.substr(0, rest.find('\0'));
  skip(text.size() + 1);
  return text;
}

}  // namespace formats
